#pragma once

#include <cstdint>
#include <string>

#include "tessera/WorkingHours.h"
#include "tessera/ZoneRule.h"

namespace tsr {

struct User {
    std::int64_t id = 0;  // in the store
    std::string name;     // upper and lower case of a to z are one
    std::string zoneName; // as the user was given it: "Europe/Berlin", or the rule itself
    ZoneRule zone;
    WorkingHours hours;
};

// Raises TesseraError for a name that is empty, too long or not plain text, and for hours that don't lie in
// one day.
void checkUser(const User& user);

} // namespace tsr
