#include "applications/MemoReplicator.h"

#include "applications/singleRecord.h"
#include "records/memoJournal.h"
#include "server/commands.h"

namespace tsr {

MemoReplicator::MemoReplicator(const CountedPtr<PalmProxy>& palm)
    : ItemReplicator(traits_, memoCommands, "Memo items", palm), categories_(palm, log()) {}

PalmRecordGroup MemoReplicator::convertToPalm(const NotesApplicationRecord& record, bool& resendWanted) {
    resendWanted = false;
    const auto& journal = static_cast<const NotesJournalRecord&>(record); // made by makeNotesRecord
    PalmMemoRecord memo;
    setMemoText(memo, journal);
    memo.setCategory(categories_.category(journal.categories, ApplicationCategories::EmptyNames::Take));
    return groupOf(memo);
}

CountedPtr<NotesApplicationRecord> MemoReplicator::convertToNotes(const PalmRecordGroup& group, bool, int) {
    const auto& memo = singleRecord<PalmMemoRecord>(group);
    const auto journal = makeCounted<NotesJournalRecord>();
    setJournalText(*journal, memo);
    journal->categories = categories_.names(memo.category());
    return journal;
}

ItemVersion MemoReplicator::sendItem(const std::string&, const std::string& token, const ItemId& itemId,
                                     const NotesApplicationRecord& record) {
    return sendMemoItem(server(), token, itemId, itemOf(record));
}

std::string MemoReplicator::sendReplicationInfo(const std::string&, const StringRun& entries) {
    return ReplicatorImpl::sendReplicationInfo(server(), account(), memoCommands.sendReplicationInfo,
                                               entries);
}

CountedPtr<NotesApplicationRecord> MemoReplicator::makeNotesRecord(const NotesItem& item) {
    return makeCounted<NotesJournalRecord>(item, timeZone());
}

Replicator::Record MemoReplicator::makePalmRecord(PalmRecordBuffer& buffer, bool archived) {
    return makeCounted<PalmMemoRecord>(buffer, archived);
}

} // namespace tsr
