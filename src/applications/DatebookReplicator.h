#pragma once

#include <string>
#include <vector>

#include "applications/DatebookApplicationTraits.h"
#include "applications/ItemReplicator.h"

namespace tsr {

// The Date Book and the Notes calendar. A meeting is one record or several, and the server is told from which
// day to which meetings take part.
class DatebookReplicator : public ItemReplicator {
public:
    explicit DatebookReplicator(const CountedPtr<PalmProxy>& palm);

protected:
    // A meeting that is spread over its days goes back to Notes as a change of its group.
    PalmRecordGroup convertToPalm(const NotesApplicationRecord& record, bool& resendWanted) override;
    // The whole meeting when its master changed or is new, and otherwise what happened to its instances.
    CountedPtr<NotesApplicationRecord> convertToNotes(const PalmRecordGroup& group, bool wasModified,
                                                      int reserved) override;
    ItemVersion sendItem(const std::string& className, const std::string& token, const ItemId& itemId,
                         const NotesApplicationRecord& record) override;
    std::string sendReplicationInfo(const std::string& className, const StringRun& entries) override;
    CountedPtr<NotesApplicationRecord> makeNotesRecord(const NotesItem& item) override;
    Record makePalmRecord(PalmRecordBuffer& buffer, bool archived) override;

private:
    // The ends of the date window as of now, in decimal. Raise NoStartDate, NoEndDate.
    std::string windowStart();
    std::string windowEnd();

    DatebookApplicationTraits traits_;
};

} // namespace tsr
