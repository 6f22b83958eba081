#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "device/PalmProxy.h"
#include "device/PalmRecordBuffer.h"

namespace tsr {

// The category table of an application, which its application info block begins with:
//
//   offset        size  field
//   0             2     renamed flags, passed through
//   2 + 16 x i    16    name of category i, 0 to 15: at most 15 characters and a NUL
//   258                 the application's own, passed through
class PalmCategories {
public:
    explicit PalmCategories(PalmProxy& palm); // raises MissingNul for a name without an end

    const std::string& categoryName(std::uint32_t index) const; // raises InvalidCategory above 15

    // The index of the category of exactly this name, or -1: for a name of 16 characters or more, and for one
    // that isn't there. With `create` such a name takes the first free slot, if there is one.
    int categoryIndex(const std::string& name, bool create);

    bool dirty() const { return dirty_; } // a name was added: the block must be written back
    const PalmRecordBuffer& block() const { return block_; }

private:
    static constexpr std::size_t slots = 16;

    PalmRecordBuffer block_;
    std::array<std::string, slots> names_;
    bool dirty_ = false;
};

} // namespace tsr
