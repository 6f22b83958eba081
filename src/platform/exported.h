#pragma once

// Marks what a shared library shows to others. Everything else is hidden.
#ifdef _WIN32
#define TSR_EXPORTED __declspec(dllexport)
#else
#define TSR_EXPORTED __attribute__((visibility("default")))
#endif
