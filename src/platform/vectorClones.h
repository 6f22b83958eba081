#pragma once

// Marks a function whose loops gain from wider vectors than every machine has: it is compiled for several
// kinds of machine, and the loader picks one. Nothing where the system's loader can't.
#if defined(__GNUC__) && !defined(__clang__) && defined(__x86_64__) && defined(__linux__)                    \
    && !defined(__SANITIZE_ADDRESS__)
#define TSR_VECTOR_CLONES __attribute__((target_clones("arch=x86-64-v4", "arch=x86-64-v3", "default")))
#else
#define TSR_VECTOR_CLONES
#endif
