#include "bench/scale/HeapCount.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <malloc.h>
#include <new>

namespace tsr::bench {

namespace {

constexpr std::int64_t headerBytes = sizeof(std::size_t); // in front of every block

thread_local bool counting = false;
thread_local std::int64_t live = 0;
thread_local std::int64_t peak = 0;

std::int64_t bytesOf(void* block) {
    return static_cast<std::int64_t>(::malloc_usable_size(block)) + headerBytes;
}

} // namespace

HeapCount::HeapCount() {
    live = 0;
    peak = 0;
    counting = true;
}

HeapCount::~HeapCount() { counting = false; }

std::size_t HeapCount::peakBytes() const { return static_cast<std::size_t>(peak); }

HeapCountPause::HeapCountPause() : wasCounting_(counting) { counting = false; }

HeapCountPause::~HeapCountPause() { counting = wasCounting_; }

} // namespace tsr::bench

// The program's own, in place of the library's; the other forms of both end here.

void* operator new(std::size_t bytes) {
    void* const block = std::malloc(std::max<std::size_t>(bytes, 1));
    if (block == nullptr) throw std::bad_alloc();
    if (tsr::bench::counting) {
        tsr::bench::live += tsr::bench::bytesOf(block);
        tsr::bench::peak = std::max(tsr::bench::peak, tsr::bench::live);
    }
    return block;
}

void operator delete(void* block) noexcept {
    if (tsr::bench::counting && block != nullptr) tsr::bench::live -= tsr::bench::bytesOf(block);
    std::free(block);
}

void operator delete(void* block, std::size_t) noexcept { operator delete(block); }
