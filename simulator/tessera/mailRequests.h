#pragma once

#include <vector>

#include "tessera/Route.h"

namespace tsr {

// The requests for finding the mail database.
const std::vector<Route>& mailRoutes();

} // namespace tsr
