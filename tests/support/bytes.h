#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tsr::test {

// Bytes written as pairs of hexadecimal digits with blanks between them: bytes("4D 69 6C 6B 00").
std::vector<std::uint8_t> bytes(const std::string& pairs);

// The reverse, for failure messages and for comparing as text.
std::string hexText(const std::vector<std::uint8_t>& data);

} // namespace tsr::test
