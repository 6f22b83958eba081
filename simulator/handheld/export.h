#pragma once

// Marks a function that other libraries and programs may call; all else stays hidden. On Windows the lists
// beside the libraries (*.def) say it, as some functions are to have no name.
#ifdef _WIN32
#define TSR_EXPORT
#else
#define TSR_EXPORT __attribute__((visibility("default")))
#endif
