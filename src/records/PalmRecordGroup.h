#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "foundation/CountedPtr.h"
#include "records/PalmApplicationRecord.h"

namespace tsr {

// The device records that one Notes item stands for, by tag. Tag 0 is the primary record; others belong to
// the changed instances of a meeting. A null member says that the record of that tag has been deleted.
class PalmRecordGroup {
public:
    using Member = CountedPtr<PalmApplicationRecord>;
    using Members = std::map<std::uint32_t, Member>;

    std::size_t size() const { return members_.size(); } // null ones included
    void set(std::uint32_t tag, const Member& record) { members_[tag] = record; }
    bool contains(std::uint32_t tag) const { return members_.count(tag) != 0; }
    const Member& get(std::uint32_t tag) const;       // raises TagNotInGroup
    void tags(std::vector<std::uint32_t>& out) const; // ascending, in place of what was there

    // Of the first member that isn't null, in the order of tags; 0 where there is none.
    std::uint8_t category() const;
    std::uint8_t syncEntryUserData() const;

    Members::const_iterator begin() const { return members_.begin(); }
    Members::const_iterator end() const { return members_.end(); }

private:
    const PalmApplicationRecord* firstRecord() const;

    Members members_;
};

} // namespace tsr
