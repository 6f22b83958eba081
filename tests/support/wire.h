#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tsr::test {

// The 16-bit units of `text`, low byte first, without a terminator.
std::vector<std::uint8_t> wide(const std::string& text);

// A body: each string with a zero unit behind it.
std::vector<std::uint8_t> wireStrings(const std::vector<std::string>& strings);

// A response frame whose lengths are right.
std::vector<std::uint8_t> responseFrame(std::uint32_t resultCode, const std::string& message,
                                        const std::vector<std::uint8_t>& body);

// A successful one with the body of `strings`.
std::vector<std::uint8_t> responseOf(const std::vector<std::string>& strings);

// A request frame as a client sends it.
std::vector<std::uint8_t> requestOf(std::uint32_t code, const std::vector<std::string>& strings);

} // namespace tsr::test
