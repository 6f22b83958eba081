#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "foundation/Dbid.h"
#include "foundation/Unid.h"

namespace tsr {

// The UNIDs of items of one Notes database, by index: sequence number blocks name an item by the two bytes of
// its index in place of the 16 of its UNID.
class UnidBlock {
public:
    static constexpr std::size_t most = 256;

    explicit UnidBlock(const Dbid& dbid) : dbid_(dbid) {}

    const Dbid& dbid() const { return dbid_; }
    const std::vector<std::pair<std::uint32_t, Unid>>& unids() const { return unids_; } // by index
    bool isFull() const { return unids_.size() >= most; }

    const Unid& unidAt(std::uint32_t index) const; // raises InvalidUnidBlockIndex

    // Puts `unid` where the runs of consecutive indexes stay few, and returns its index: into the narrowest
    // gap, else before the lowest, else behind the highest.
    std::uint32_t addUnid(const Unid& unid);

    void addUnidAt(std::uint32_t index, const Unid& unid); // raises UnidBlockIndexTaken

    template <typename Predicate>
    void removeIf(Predicate unwanted) { // by index; leaves `dirty` alone
        std::erase_if(unids_, [&unwanted](const auto& item) { return unwanted(item.first); });
    }

    bool dirty = false; // to be written by the next rewrite

private:
    using Unids = std::vector<std::pair<std::uint32_t, Unid>>;

    std::uint32_t freeIndex() const;
    bool hasGap() const; // of a block that isn't empty
    std::uint32_t narrowestGap() const;
    Unids::const_iterator place(std::uint32_t index) const; // of the first UNID at `index` or behind it

    Dbid dbid_;
    Unids unids_; // sorted: a block of 256 is found and shifted faster in one piece of memory than in 256
};

} // namespace tsr
