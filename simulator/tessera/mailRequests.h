#pragma once

#include <vector>

#include "tessera/RequestContext.h"

namespace tsr {

// The requests for finding the mail database.
const std::vector<Route>& mailRoutes();

} // namespace tsr
