#pragma once

#include <cstdint>

namespace tsr {

// The kind of a replication. The handheld stores the numbers, so they never change.
enum class ReplicationType : std::int32_t {
    MustChoose = 0, // the user has not chosen a first-time type yet: the session refuses to run
    None = 1,       // do nothing
    Normal = 2,     // only what changed
    Reset = 3,      // forget the sequence numbers, keep the data
    Clear = 4,      // delete the data on the device, then replicate
    Fast = 5,       // as Normal
    Slow = 6,       // compare all records, not only the flagged ones
};

// The name that the session log shows, "Unknown" for any other number.
const char* replicationTypeName(ReplicationType type);

} // namespace tsr
