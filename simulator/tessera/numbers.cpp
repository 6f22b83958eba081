#include "tessera/numbers.h"

#include <charconv>

namespace tsr {

std::optional<std::uint32_t> parseNumber(const std::string& text) {
    std::uint32_t value = 0;
    const char* end = text.data() + text.size();
    const auto [stopped, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || stopped != end) return std::nullopt;
    return value;
}

} // namespace tsr
