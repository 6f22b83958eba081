#pragma once

#include <cstdint>
#include <vector>

namespace tsr {

// Which items of one UNID block have their replication data in one record of the sync database.
class SeqNumBlock {
public:
    static constexpr std::size_t most = 15;

    explicit SeqNumBlock(std::int32_t unidBlockSuid) : unidBlockSuid_(unidBlockSuid) {}

    std::int32_t unidBlockSuid() const { return unidBlockSuid_; }
    const std::vector<std::uint32_t>& indexes() const {
        return indexes_;
    } // in the order that they were added
    bool isFull() const { return indexes_.size() >= most; }

    void addIndex(std::uint32_t index);
    void removeIndex(std::uint32_t index); // the first of its kind; raises NoUnidBlockIndex

    bool dirty = false; // to be written by the next rewrite

private:
    std::int32_t unidBlockSuid_;
    std::vector<std::uint32_t> indexes_;
};

} // namespace tsr
