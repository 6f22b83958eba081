#pragma once

// Marks what a shared library shows to others. Everything else is hidden. On Windows the list beside the
// source (*.def) says it, so that the name stands there as it is to be found.
#ifdef _WIN32
#define TSR_EXPORTED
#else
#define TSR_EXPORTED __attribute__((visibility("default")))
#endif
