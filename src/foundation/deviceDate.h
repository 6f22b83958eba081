#pragma once

#include <cstdint>

#include "foundation/Date.h"

namespace tsr {

// The 16-bit date of a device record: year - 1904 in bits 15 to 9, month in 8 to 5, day in 4 to 0. The year
// loses what is above 7 bits.
std::uint16_t packDate(const Date& date);

// Raises InvalidDate for a day that does not exist, DateTooEarly for one before 1993.
Date unpackDate(std::uint16_t packed);

} // namespace tsr
