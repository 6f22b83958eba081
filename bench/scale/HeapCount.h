#pragma once

#include <cstddef>

namespace tsr::bench {

// Counts what this thread has on the heap from its construction on, as the heap sees it: the whole block with
// its header. One at a time in a thread.
class HeapCount {
public:
    HeapCount();
    HeapCount(const HeapCount&) = delete;
    HeapCount& operator=(const HeapCount&) = delete;
    ~HeapCount();

    std::size_t peakBytes() const;
};

// While it lives, what this thread allocates and frees isn't counted: it belongs to somebody else.
class HeapCountPause {
public:
    HeapCountPause();
    HeapCountPause(const HeapCountPause&) = delete;
    HeapCountPause& operator=(const HeapCountPause&) = delete;
    ~HeapCountPause();

private:
    bool wasCounting_;
};

} // namespace tsr::bench
