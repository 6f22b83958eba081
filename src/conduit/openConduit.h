#pragma once

#include <cstdint>

#include "conduit/SyncProperties.h"
#include "platform/callingConvention.h"
#include "platform/exported.h"

// The conduit's one export. The HotSync manager calls it once for each application that is due. Returns -1
// for an application that the conduit doesn't know, otherwise 0: a failed session shows in the HotSync log
// alone. Nothing is ever thrown into the HotSync manager, and nothing is left behind in memory.
extern "C" TSR_EXPORTED std::int32_t TSR_PLATFORM_CALL openConduit(
    void(TSR_PLATFORM_CALL* progressCallback)(const char*), const tsr::SyncProperties* syncProperties);
