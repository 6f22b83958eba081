#pragma once

#include <string>

#include "tessera/User.h"

namespace tsr {

// The settings of a user as they stand in the arguments and on the screen. All readers raise ArgumentError.

// Sets hours such as "09:00-17:00".
void setHours(WorkingHours& hours, const std::string& text);
std::string hoursText(const WorkingHours& hours);

// Sets days such as "mon-fri" or "mon,wed-fri".
void setDays(WorkingHours& hours, const std::string& text);
std::string daysText(const WorkingHours& hours);

// Sets the zone by its name in the system's time zone database, "Europe/Berlin", or by a rule.
void setZone(User& user, const std::string& text);

} // namespace tsr
