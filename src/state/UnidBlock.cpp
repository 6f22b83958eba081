#include "state/UnidBlock.h"

#include <iterator>

#include "foundation/GeneralError.h"

namespace tsr {

const Unid& UnidBlock::unidAt(std::uint32_t index) const {
    const auto found = unids_.find(index);
    if (found == unids_.end()) throw GeneralError(Message::InvalidUnidBlockIndex) << Tag('n') << index;
    return found->second;
}

std::uint32_t UnidBlock::freeIndex() const {
    if (unids_.empty()) return 0;
    std::uint32_t narrowest = 0;
    std::uint32_t chosen = 0;
    for (auto lower = unids_.begin(), upper = std::next(lower); upper != unids_.end(); lower = upper++) {
        const std::uint32_t difference = upper->first - lower->first;
        if (difference > 1 && (narrowest == 0 || difference < narrowest)) {
            narrowest = difference;
            chosen = lower->first + 1;
        }
    }
    if (narrowest != 0) return chosen;
    const std::uint32_t lowest = unids_.begin()->first;
    return lowest != 0 ? lowest - 1 : unids_.rbegin()->first + 1;
}

std::uint32_t UnidBlock::addUnid(const Unid& unid) {
    const std::uint32_t index = freeIndex();
    unids_.emplace(index, unid);
    dirty = true;
    return index;
}

void UnidBlock::addUnidAt(std::uint32_t index, const Unid& unid) {
    if (!unids_.emplace(index, unid).second) {
        throw GeneralError(Message::UnidBlockIndexTaken) << Tag('n') << index << Tag("unid") << unid.text();
    }
    dirty = true;
}

} // namespace tsr
