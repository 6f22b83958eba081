#pragma once

// The calling convention of the handheld's desktop libraries and of our own export.
#ifdef _WIN32
#define TSR_PLATFORM_CALL __cdecl
#else
#define TSR_PLATFORM_CALL
#endif
