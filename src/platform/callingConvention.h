#pragma once

// The calling convention of the handheld's desktop libraries and of our own export, and that of the function
// that the run-time library calls on a new thread.
#ifdef _WIN32
#define TSR_PLATFORM_CALL __cdecl
#define TSR_THREAD_CALL __stdcall
#else
#define TSR_PLATFORM_CALL
#define TSR_THREAD_CALL
#endif
