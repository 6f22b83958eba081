#pragma once

#include <vector>

#include "tessera/Route.h"

namespace tsr {

// The requests for the search for free time.
const std::vector<Route>& freeTimeRoutes();

} // namespace tsr
