#pragma once

#include "handheld/Handheld.h"

namespace tsr {

// Adds what every handheld has, unless it is there: an empty database for each application that replicates
// records, with its categories, and the configuration.
void addStandardDatabases(Handheld& handheld);

} // namespace tsr
