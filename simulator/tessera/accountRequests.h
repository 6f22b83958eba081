#pragma once

#include <vector>

#include "tessera/Route.h"

namespace tsr {

// The requests for finding the name, authenticating, the time zone, the errors of the session and its end.
const std::vector<Route>& accountRoutes();

} // namespace tsr
