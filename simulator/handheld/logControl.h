#pragma once

#include <cstdint>

#include "handheld/export.h"

// What a HotSync manager and tests do with the simulated HotSync log library: read the log, and let its
// opening fail.
//
// Entries stay until they are cleared, over any number of openings. An entry that comes while the log is
// closed is refused.

extern "C" {

TSR_EXPORT std::uint64_t hotSyncLogCount();
// Both answer for an index below the count, else null and -1. The text is valid until the log is cleared.
TSR_EXPORT const char* hotSyncLogText(std::uint64_t index);
TSR_EXPORT std::int32_t hotSyncLogActivity(std::uint64_t index);
TSR_EXPORT void hotSyncLogClear();

TSR_EXPORT std::int32_t hotSyncLogIsOpen(); // 1 while it is open
// From now on HsLogOpen answers `code`; 0 mends it.
TSR_EXPORT void hotSyncLogFailOpen(std::int32_t code);

} // extern "C"
