#include "state/SeqNumBlock.h"

#include <algorithm>

#include "foundation/GeneralError.h"

namespace tsr {

void SeqNumBlock::addIndex(std::uint32_t index) {
    indexes_.push_back(index);
    dirty = true;
}

void SeqNumBlock::removeIndex(std::uint32_t index) {
    const auto found = std::find(indexes_.begin(), indexes_.end(), index);
    if (found == indexes_.end()) {
        throw GeneralError(Message::NoUnidBlockIndex) << Tag('n') << index << Tag("suid") << unidBlockSuid_;
    }
    indexes_.erase(found);
    dirty = true;
}

} // namespace tsr
