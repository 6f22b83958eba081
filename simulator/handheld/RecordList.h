#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <vector>

#include "handheld/HandheldRecord.h"

namespace tsr {

// The records of a database in index order. Reading by id or by index, appending and erasing take logarithmic
// time, so that a database of 50,000 records can be walked and emptied in a moment.
//
// Records stand in slots that they keep when others are erased; a tree of counts turns a slot into an index
// and back.
class RecordList {
public:
    std::size_t size() const { return byId_.size(); }
    bool contains(std::uint32_t id) const { return byId_.contains(id); }

    HandheldRecord* find(std::uint32_t id); // null when there is none
    const HandheldRecord* find(std::uint32_t id) const;
    const HandheldRecord& at(std::size_t index) const; // index below size()
    std::size_t indexOf(std::uint32_t id) const;       // of a record that is there

    void append(HandheldRecord record); // its id is not in the list
    bool erase(std::uint32_t id);

    // The first record at or behind `index` for which `wanted` is true, and `index` is then its index; null
    // when there is none.
    template <typename Wanted>
    const HandheldRecord* findFrom(std::size_t& index, Wanted wanted) const {
        if (index >= size()) return nullptr;
        for (Slot slot = slotAt(index); slot < slots_.size(); ++slot) {
            if (!slots_[slot]) continue;
            if (wanted(*slots_[slot])) return &*slots_[slot];
            ++index;
        }
        return nullptr;
    }

    template <typename Work>
    void forEach(Work work) const {
        for (const auto& record : slots_) {
            if (record) work(*record);
        }
    }

    // `change` answers whether it changed the record.
    template <typename Change>
    bool changeEach(Change change) {
        bool changed = false;
        for (auto& record : slots_) {
            if (record && change(*record)) changed = true;
        }
        return changed;
    }

    std::vector<HandheldRecord> all() const;

    bool operator==(const RecordList& other) const { return all() == other.all(); }

private:
    using Slot = std::size_t;

    void compact();
    void count(Slot slot);
    void discount(Slot slot);
    std::size_t countBefore(Slot slot) const;
    Slot slotAt(std::size_t index) const;

    std::vector<std::optional<HandheldRecord>> slots_;
    std::vector<std::uint32_t> tree_; // a Fenwick tree over the slots; its node n is at n - 1
    std::map<std::uint32_t, Slot> byId_;
};

} // namespace tsr
