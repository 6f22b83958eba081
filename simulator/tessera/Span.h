#pragma once

#include <cstdint>

namespace tsr {

// A stretch of time in UTC, seconds since 1970; `end` is the first second behind it.
struct Span {
    std::int64_t start = 0;
    std::int64_t end = 0;

    bool operator==(const Span&) const = default;
};

} // namespace tsr
