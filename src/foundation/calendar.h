#pragma once

#include <cstdint>

namespace tsr {

inline constexpr std::uint32_t firstYear = 1800;         // the smallest that validates; a TimeStamp's epoch
inline constexpr std::uint32_t epochJulianDay = 2378497; // 1800-01-01
inline constexpr std::int32_t secondsPerMinute = 60;
inline constexpr std::int32_t secondsPerDay = 86400;
inline constexpr std::int32_t secondsPerWeek = 604800;

} // namespace tsr
