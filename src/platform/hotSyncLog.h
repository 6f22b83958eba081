#pragma once

#include <cstdint>

#include "platform/callingConvention.h"

// The binary interface of HSLOG20, the HotSync log library. On Windows its functions have no names, only the
// ordinals 50, 51 and 52 in this order. 0 is success.

extern "C" {

std::int32_t TSR_PLATFORM_CALL HsLogOpen();
std::int32_t TSR_PLATFORM_CALL HsLogClose();
// `activity` is the log's own code (see foundation/HotSyncActivity.h), `zero` is always 0.
std::int32_t TSR_PLATFORM_CALL HsLogAddEntry(const char* text, std::int32_t activity, std::int32_t zero);

} // extern "C"
