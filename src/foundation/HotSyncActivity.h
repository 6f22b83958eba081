#pragma once

#include <cstdint>

namespace tsr {

// The kinds of entry in the HotSync log.
enum class HotSyncActivity : std::int32_t {
    Started = 0,  // a session started
    Text = 1,     // a plain line
    Aborted = 2,  // a session ended by a failure
    Finished = 3, // a session finished
    Warning = 4,  // a line of an error chain
};

// The code that the log library takes; -1 for `Text` and for any other number.
std::int32_t activityCode(HotSyncActivity activity);

} // namespace tsr
