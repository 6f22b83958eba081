#pragma once

#include <vector>

#include "tessera/Application.h"
#include "tessera/Route.h"

namespace tsr {

// The replication requests of one application, which is kept by reference.
std::vector<Route> replicationRoutes(const Application& application);

} // namespace tsr
