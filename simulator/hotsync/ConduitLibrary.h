#pragma once

#include <string>

#include "conduit/SyncProperties.h"
#include "platform/callingConvention.h"

namespace tsr {

// The conduit, loaded as the HotSync manager loads it. It is unloaded with this object.
class ConduitLibrary {
public:
    using OpenConduit = std::int32_t(TSR_PLATFORM_CALL*)(void(TSR_PLATFORM_CALL*)(const char*),
                                                         const SyncProperties*);

    // `path` empty takes the library beside this program. Raises std::runtime_error with one line.
    explicit ConduitLibrary(const std::string& path);
    ConduitLibrary(const ConduitLibrary&) = delete;
    ConduitLibrary& operator=(const ConduitLibrary&) = delete;
    ~ConduitLibrary();

    OpenConduit openConduit() const { return openConduit_; }

private:
    void* handle_;
    OpenConduit openConduit_ = nullptr;
};

} // namespace tsr
