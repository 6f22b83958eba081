#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <ostream>
#include <string>

namespace tsr {

// The identity of a Notes database: two words, in text 16 lowercase hexadecimal digits.
class Dbid {
public:
    using Words = std::array<std::uint32_t, 2>;

    Dbid() = default;                       // the null identity
    explicit Dbid(const std::string& text); // raises InvalidDbid unless it is 16 digits of either case
    explicit Dbid(const Words& words) : words_(words) {}

    bool isNull() const { return words_ == Words(); }
    std::string text() const;
    const Words& words() const { return words_; } // in the order of a device record

    auto operator<=>(const Dbid&) const = default; // word by word: the order that the state sorts by

private:
    Words words_{};
};

std::ostream& operator<<(std::ostream& stream, const Dbid& value);

} // namespace tsr
