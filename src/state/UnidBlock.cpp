#include "state/UnidBlock.h"

#include <algorithm>
#include <iterator>

#include "foundation/GeneralError.h"

namespace tsr {

UnidBlock::Unids::const_iterator UnidBlock::place(std::uint32_t index) const {
    return std::partition_point(unids_.begin(), unids_.end(),
                                [index](const auto& item) { return item.first < index; });
}

const Unid& UnidBlock::unidAt(std::uint32_t index) const {
    const auto found = place(index);
    if (found == unids_.end() || found->first != index) {
        throw GeneralError(Message::InvalidUnidBlockIndex) << Tag('n') << index;
    }
    return found->second;
}

bool UnidBlock::hasGap() const { return unids_.back().first - unids_.front().first + 1 != unids_.size(); }

// Behind the UNID before the gap; of gaps of one width the first.
std::uint32_t UnidBlock::narrowestGap() const {
    std::uint32_t narrowest = 0;
    std::uint32_t chosen = 0;
    for (auto lower = unids_.begin(), upper = std::next(lower); upper != unids_.end(); lower = upper++) {
        const std::uint32_t difference = upper->first - lower->first;
        if (difference > 1 && (narrowest == 0 || difference < narrowest)) {
            narrowest = difference;
            chosen = lower->first + 1;
        }
    }
    return chosen;
}

std::uint32_t UnidBlock::freeIndex() const {
    if (unids_.empty()) return 0;
    if (hasGap()) return narrowestGap();
    const std::uint32_t lowest = unids_.front().first;
    return lowest != 0 ? lowest - 1 : unids_.back().first + 1;
}

std::uint32_t UnidBlock::addUnid(const Unid& unid) {
    const std::uint32_t index = freeIndex();
    unids_.emplace(place(index), index, unid);
    dirty = true;
    return index;
}

void UnidBlock::addUnidAt(std::uint32_t index, const Unid& unid) {
    const auto found = place(index);
    if (found != unids_.end() && found->first == index) {
        throw GeneralError(Message::UnidBlockIndexTaken) << Tag('n') << index << Tag("unid") << unid.text();
    }
    unids_.emplace(found, index, unid);
    dirty = true;
}

} // namespace tsr
