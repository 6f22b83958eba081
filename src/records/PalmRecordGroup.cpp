#include "records/PalmRecordGroup.h"

#include "foundation/GeneralError.h"

namespace tsr {

const PalmRecordGroup::Member& PalmRecordGroup::get(std::uint32_t tag) const {
    const auto found = members_.find(tag);
    if (found == members_.end()) throw GeneralError(Message::TagNotInGroup) << Tag('t') << tag;
    return found->second;
}

void PalmRecordGroup::tags(std::vector<std::uint32_t>& out) const {
    out.clear();
    for (const auto& [tag, record] : members_) out.push_back(tag);
}

const PalmApplicationRecord* PalmRecordGroup::firstRecord() const {
    for (const auto& [tag, record] : members_) {
        if (record) return record.get();
    }
    return nullptr;
}

std::uint8_t PalmRecordGroup::category() const {
    const PalmApplicationRecord* record = firstRecord();
    return record == nullptr ? std::uint8_t{0} : record->category();
}

std::uint8_t PalmRecordGroup::syncEntryUserData() const {
    const PalmApplicationRecord* record = firstRecord();
    return record == nullptr ? std::uint8_t{0} : record->syncEntryUserData();
}

} // namespace tsr
