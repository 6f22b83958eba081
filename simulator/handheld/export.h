#pragma once

// Marks a function that other libraries and programs may call; all else stays hidden.
#ifdef _WIN32
#define TSR_EXPORT __declspec(dllexport)
#else
#define TSR_EXPORT __attribute__((visibility("default")))
#endif
