#pragma once

#include <string>
#include <vector>

#include "applications/ApplicationCategories.h"
#include "applications/ItemReplicator.h"
#include "applications/MemoApplicationTraits.h"

namespace tsr {

// Memo Pad and the Notes journal: an entry is one memo.
class MemoReplicator : public ItemReplicator {
public:
    explicit MemoReplicator(const CountedPtr<PalmProxy>& palm);

protected:
    PalmRecordGroup convertToPalm(const NotesApplicationRecord& record, bool& resendWanted) override;
    CountedPtr<NotesApplicationRecord> convertToNotes(const PalmRecordGroup& group, bool wasModified,
                                                      int reserved) override;
    ItemVersion sendItem(const std::string& className, const std::string& token, const ItemId& itemId,
                         const NotesApplicationRecord& record) override;
    std::string sendReplicationInfo(const std::string& className, const StringRun& entries) override;
    CountedPtr<PalmRecordBuffer> appInfoToWrite() override { return categories_.appInfoToWrite(); }
    CountedPtr<NotesApplicationRecord> makeNotesRecord(const NotesItem& item) override;
    Record makePalmRecord(PalmRecordBuffer& buffer, bool archived) override;

private:
    MemoApplicationTraits traits_;
    ApplicationCategories categories_;
};

} // namespace tsr
