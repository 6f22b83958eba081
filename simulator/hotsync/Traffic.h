#pragma once

#include <cstddef>
#include <string>

#include "handheld/Handheld.h"
#include "hotsync/HotSyncApplication.h"

namespace tsr {

// What went each way in one session, worked out from the handheld before and after it.
struct Traffic {
    struct Counts {
        std::size_t added = 0;
        std::size_t changed = 0;
        std::size_t deleted = 0;

        bool operator==(const Counts&) const = default;
    };

    Counts toNotes;    // items
    Counts toHandheld; // items; for the free-time search, weeks

    // "to Notes 1 new, 0 changed, 0 deleted; to the handheld ..."
    std::string text() const;

    bool operator==(const Traffic&) const = default;
};

Traffic trafficOf(const HotSyncApplication& application, const Handheld& before, const Handheld& after);

} // namespace tsr
