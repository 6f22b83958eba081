#pragma once

#include <cstddef>
#include <cstdint>

namespace tsr {

// The properties that the HotSync manager publishes to a conduit. Only two fields are read.
#pragma pack(push, 1)
struct SyncProperties {
    static constexpr std::int32_t slow = 1;

    std::int32_t syncType; // 1 asks for a slow sync
    std::uint8_t unread[904];
    std::uint32_t creator; // of the application to synchronise
};
#pragma pack(pop)

static_assert(offsetof(SyncProperties, creator) == 908);

} // namespace tsr
