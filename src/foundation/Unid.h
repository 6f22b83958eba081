#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <ostream>
#include <string>

namespace tsr {

// The identity of a Notes document: four words, in text 32 lowercase hexadecimal digits.
class Unid {
public:
    using Words = std::array<std::uint32_t, 4>;

    Unid() = default;                       // all words 0
    explicit Unid(const std::string& text); // raises InvalidUnid unless it is 32 digits of either case
    explicit Unid(const Words& words) : words_(words) {}

    std::string text() const;
    const Words& words() const { return words_; } // in the order of a device record

    auto operator<=>(const Unid&) const = default; // word by word: the order that the state sorts by

private:
    Words words_{};
};

std::ostream& operator<<(std::ostream& stream, const Unid& value);

} // namespace tsr
