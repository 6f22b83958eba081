#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace tsr::test {

// What properties are tried out with. A seed makes one row of values, always the same.
class RandomText {
public:
    explicit RandomText(std::uint32_t seed) : random_(seed) {}

    std::uint32_t below(std::uint32_t bound) { return static_cast<std::uint32_t>(random_() % bound); }
    bool flag() { return below(2) == 1; }

    // Up to `most` characters of any code but NUL, many of them line ends.
    std::string text(std::uint32_t most) {
        std::string text(below(most + 1), ' ');
        for (char& character : text)
            character = below(8) == 0 ? "\n\r"[below(2)] : static_cast<char>(1 + below(255));
        return text;
    }

    // The same without line ends, and not empty.
    std::string line(std::uint32_t most) {
        std::string line(1 + below(most), ' ');
        for (char& character : line) character = static_cast<char>(' ' + below(224));
        return line;
    }

    std::vector<std::string> lines(std::uint32_t mostLines) {
        std::vector<std::string> list(below(mostLines + 1));
        for (std::string& one : list) one = line(20);
        return list;
    }

private:
    std::mt19937 random_;
};

} // namespace tsr::test
