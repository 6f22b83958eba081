#include "applications/MemoReplicator.h"

#include "applications/singleRecord.h"
#include "records/memoJournal.h"
#include "server/commands.h"

namespace tsr {

MemoReplicator::MemoReplicator(const CountedPtr<PalmProxy>& palm)
    : Replicator(traits_, palm), categories_(palm, log()) {}

PalmRecordGroup MemoReplicator::convertToPalm(const NotesApplicationRecord& record, bool& resendWanted) {
    resendWanted = false;
    const auto& journal = static_cast<const NotesJournalRecord&>(record); // made by makeNotesRecord
    PalmMemoRecord memo;
    setMemoText(memo, journal);
    memo.setCategory(categories_.category(journal.categories, ApplicationCategories::EmptyNames::Take));
    PalmRecordGroup group;
    group.set(0, makeCounted<PalmMemoRecord>(memo));
    return group;
}

CountedPtr<NotesApplicationRecord> MemoReplicator::convertToNotes(const PalmRecordGroup& group, bool, int) {
    const auto& memo = singleRecord<PalmMemoRecord>(group);
    const auto journal = makeCounted<NotesJournalRecord>();
    setJournalText(*journal, memo);
    journal->categories = categories_.names(memo.category());
    return journal;
}

void MemoReplicator::fetchAnomalies(const std::string& token, std::vector<ItemId>& out) {
    fetchItemIds(server(), token, memoCommands.countAnomalies, memoCommands.fetchAnomalies, out);
}

void MemoReplicator::fetchDeletedInNotes(const std::string& token, std::vector<ItemId>& out) {
    fetchItemIds(server(), token, memoCommands.countDeleted, memoCommands.fetchDeleted, out);
}

void MemoReplicator::fetchWantedItems(const std::string& token, std::vector<ItemId>& out) {
    fetchItemIds(server(), token, memoCommands.countWanted, memoCommands.fetchWanted, out);
}

void MemoReplicator::receiveItem(const std::string& className, const std::string& token,
                                 const std::string& handle, NotesItem& item, ItemVersion& version) {
    version = ReplicatorImpl::receiveItem(server(), token, className, handle, memoCommands.receiveItem, item);
}

void MemoReplicator::listItemsToReceive(const std::string& token, std::vector<std::string>& handles) {
    listItemIndices(server(), token, memoCommands.countToReceive, handles);
}

ItemVersion MemoReplicator::sendAnomalyItem(const std::string& token, const ItemId& itemId,
                                            const NotesApplicationRecord& record, std::string& newUnid) {
    return ReplicatorImpl::sendAnomalyItem(server(), token, memoCommands.sendAnomaly, itemId, itemOf(record),
                                           false, newUnid);
}

ItemVersion MemoReplicator::sendItem(const std::string&, const std::string& token, const ItemId& itemId,
                                     const NotesApplicationRecord& record) {
    return sendMemoItem(server(), token, itemId, itemOf(record));
}

void MemoReplicator::sendDeletionList(const std::vector<ItemId>& items, std::vector<ItemId>& deleted) {
    ReplicatorImpl::sendDeletions(server(), memoCommands.sendDeletions, false, items, deleted);
}

std::string MemoReplicator::sendReplicationInfo(const std::string&, const std::vector<std::string>& entries) {
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
