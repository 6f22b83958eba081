#pragma once

#include "foundation/GeneralError.h"
#include "foundation/signals.h"
#include "records/PalmRecordGroup.h"

namespace tsr {

// The only record of a group, for applications whose items are one record each. Raises GroupNotSingle for
// another number, and BadPalmRecord for a record of another class and for one that has been deleted.
template <typename Record>
const Record& singleRecord(const PalmRecordGroup& group) {
    if (group.size() != 1) throw GeneralError(Message::GroupNotSingle) << Tag('n') << group.size();
    const auto* record = dynamic_cast<const Record*>(group.get(0).get());
    if (record == nullptr) throw BadPalmRecord();
    return *record;
}

// The group that has a copy of this record as its only one.
template <typename Record>
PalmRecordGroup groupOf(const Record& record) {
    PalmRecordGroup group;
    group.set(0, makeCounted<Record>(record));
    return group;
}

} // namespace tsr
