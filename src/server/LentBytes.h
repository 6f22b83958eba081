#pragma once

#include <cstddef>
#include <utility>

#include "foundation/CountedPtr.h"
#include "server/wireText.h"

namespace tsr {

// Bytes in memory that comes from a lender and goes back to it, so that the bodies of one connection need not
// be allocated, and their pages not be fetched, again for every response. Without a lender, or while somebody
// else has its memory, the bytes find memory of their own.
class LentBytes {
public:
    LentBytes() = default;
    explicit LentBytes(CountedPtr<WireBytes> lender) : lender_(std::move(lender)) {
        if (lender_) bytes.swap(*lender_);
    }
    LentBytes(LentBytes&&) noexcept = default;
    LentBytes& operator=(LentBytes&&) = delete;
    ~LentBytes() {
        if (!lender_ || bytes.capacity() > mostKept) return;
        bytes.clear();
        lender_->swap(bytes);
    }

    WireBytes bytes;

private:
    static constexpr std::size_t mostKept = 1 << 20; // a larger body is rare, and not worth its memory

    CountedPtr<WireBytes> lender_;
};

} // namespace tsr
