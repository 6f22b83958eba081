#pragma once

#include <ctime>
#include <string>

#include "foundation/Date.h"
#include "foundation/TimeOfDay.h"

namespace tsr {

// The fields of a day as the C library has them, day of week and day of year included.
std::tm calendarFields(const Date& date);
void setTimeFields(std::tm& fields, const TimeOfDay& time);

// strftime in the locale that the process runs in.
std::string formatted(const char* format, const std::tm& fields);

} // namespace tsr
