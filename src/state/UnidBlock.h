#pragma once

#include <cstdint>
#include <map>

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
    const std::map<std::uint32_t, Unid>& unids() const { return unids_; }
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
    std::uint32_t freeIndex() const;

    Dbid dbid_;
    std::map<std::uint32_t, Unid> unids_;
};

} // namespace tsr
