#include "support/bytes.h"

#include <sstream>
#include <stdexcept>

namespace tsr::test {

std::vector<std::uint8_t> bytes(const std::string& pairs) {
    std::vector<std::uint8_t> result;
    std::istringstream text(pairs);
    std::string pair;
    while (text >> pair) {
        std::size_t used = 0;
        const unsigned long value = std::stoul(pair, &used, 16);
        if (pair.size() != 2 || used != 2) throw std::invalid_argument("not a byte: " + pair);
        result.push_back(static_cast<std::uint8_t>(value));
    }
    return result;
}

std::string hexText(const std::vector<std::uint8_t>& data) {
    static constexpr char digits[] = "0123456789ABCDEF";
    std::string result;
    for (const std::uint8_t byte : data) {
        if (!result.empty()) result += ' ';
        result += digits[byte >> 4];
        result += digits[byte & 0xF];
    }
    return result;
}

} // namespace tsr::test
