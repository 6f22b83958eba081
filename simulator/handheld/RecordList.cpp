#include "handheld/RecordList.h"

#include <bit>
#include <utility>

namespace tsr {

namespace {

std::size_t lowestBit(std::size_t node) { return node & (~node + 1); }

} // namespace

HandheldRecord* RecordList::find(std::uint32_t id) {
    auto found = byId_.find(id);
    return found == byId_.end() ? nullptr : &*slots_[found->second];
}

const HandheldRecord* RecordList::find(std::uint32_t id) const {
    auto found = byId_.find(id);
    return found == byId_.end() ? nullptr : &*slots_[found->second];
}

const HandheldRecord& RecordList::at(std::size_t index) const { return *slots_[slotAt(index)]; }

std::size_t RecordList::indexOf(std::uint32_t id) const { return countBefore(byId_.at(id)); }

void RecordList::append(HandheldRecord record) {
    byId_[record.id] = slots_.size();
    slots_.emplace_back(std::move(record));
    count(slots_.size() - 1);
}

bool RecordList::erase(std::uint32_t id) {
    auto found = byId_.find(id);
    if (found == byId_.end()) return false;
    discount(found->second);
    slots_[found->second].reset();
    byId_.erase(found);
    if (slots_.size() > 64 && slots_.size() > 2 * size()) compact();
    return true;
}

std::vector<HandheldRecord> RecordList::all() const {
    std::vector<HandheldRecord> records;
    records.reserve(size());
    forEach([&](const HandheldRecord& record) { records.push_back(record); });
    return records;
}

// Drops the empty slots.
void RecordList::compact() {
    auto old = std::exchange(slots_, {});
    tree_.clear();
    for (auto& record : old) {
        if (record) append(std::move(*record));
    }
}

// Node n of the tree counts the records of its slots: as many, up to slot n - 1, as its lowest bit says.
void RecordList::count(Slot slot) {
    const std::size_t node = slot + 1;
    std::uint32_t sum = 1;
    for (std::size_t span = 1; span < lowestBit(node); span <<= 1) sum += tree_[node - span - 1];
    tree_.push_back(sum);
}

void RecordList::discount(Slot slot) {
    for (std::size_t node = slot + 1; node <= tree_.size(); node += lowestBit(node)) --tree_[node - 1];
}

std::size_t RecordList::countBefore(Slot slot) const {
    std::size_t sum = 0;
    for (std::size_t node = slot; node > 0; node -= lowestBit(node)) sum += tree_[node - 1];
    return sum;
}

RecordList::Slot RecordList::slotAt(std::size_t index) const {
    Slot slot = 0;
    for (std::size_t span = std::bit_floor(tree_.size()); span > 0; span >>= 1) {
        if (slot + span > tree_.size() || tree_[slot + span - 1] > index) continue;
        slot += span;
        index -= tree_[slot - 1];
    }
    return slot;
}

} // namespace tsr
