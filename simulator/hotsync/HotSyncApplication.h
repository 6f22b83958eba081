#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tsr {

// An application of the handheld that the HotSync manager may call the conduit for.
struct HotSyncApplication {
    std::string name;       // on the command line
    std::uint32_t creator;  // that the conduit is called with
    std::uint32_t type;     // of its database
    std::uint32_t syncType; // of its sync database, 0 for none
    std::string title;      // for people
};

// In the order in which they are synchronised.
const std::vector<HotSyncApplication>& hotSyncApplications();

// Null for a name that there isn't.
const HotSyncApplication* findHotSyncApplication(const std::string& name);

} // namespace tsr
