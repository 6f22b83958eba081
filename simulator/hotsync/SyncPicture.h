#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "handheld/HandheldDatabase.h"

namespace tsr {

// The Notes items that a sync database knows (docs/sync-database.md), for telling what a session did. What
// doesn't parse is left out: the conduit is the one to complain.
struct SyncPicture {
    struct Item {
        std::uint32_t sequenceNumber = 0;
        std::vector<std::uint32_t> uids; // of its device records, without holes
    };

    SyncPicture() = default;
    explicit SyncPicture(const HandheldDatabase& database);

    std::map<std::string, Item> items; // by Unid, 16 bytes
};

} // namespace tsr
