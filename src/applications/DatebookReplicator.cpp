#include "applications/DatebookReplicator.h"

#include "foundation/numbers.h"
#include "records/NotesDatebookRecordDiffs.h"
#include "records/datebookMeeting.h"

namespace tsr {

DatebookReplicator::DatebookReplicator(const CountedPtr<PalmProxy>& palm)
    : ItemReplicator(traits_, dateBookCommands, "Datebook items", palm) {}

PalmRecordGroup DatebookReplicator::convertToPalm(const NotesApplicationRecord& record, bool& resendWanted) {
    const auto& meeting = static_cast<const NotesDatebookRecord&>(record); // made by makeNotesRecord
    return toPalmGroup(meeting, resendWanted);
}

CountedPtr<NotesApplicationRecord> DatebookReplicator::convertToNotes(const PalmRecordGroup& group,
                                                                      bool wasModified, int) {
    const bool hasMaster = group.contains(0) && group.get(0);
    if (wasModified || hasMaster) return toNotesMeeting(group);
    return toNotesDifferences(group);
}

ItemVersion DatebookReplicator::sendItem(const std::string&, const std::string& token, const ItemId& itemId,
                                         const NotesApplicationRecord& record) {
    const NotesItem item = itemOf(record);
    const std::string start = windowStart();
    return sendDateBookItem(server(), token, itemId, start, windowEnd(), item);
}

std::string DatebookReplicator::sendReplicationInfo(const std::string&, const StringRun& entries) {
    const std::string start = windowStart();
    return ReplicatorImpl::sendReplicationInfo(server(), account(), dateBookCommands.sendReplicationInfo,
                                               start, windowEnd(), entries);
}

CountedPtr<NotesApplicationRecord> DatebookReplicator::makeNotesRecord(const NotesItem& item) {
    return makeCounted<NotesDatebookRecord>(item, timeZone());
}

Replicator::Record DatebookReplicator::makePalmRecord(PalmRecordBuffer& buffer, bool archived) {
    return makeCounted<PalmDatebookRecord>(buffer, archived);
}

std::string DatebookReplicator::windowStart() { return toDecimal(config().startLimit(timeZone())); }

std::string DatebookReplicator::windowEnd() { return toDecimal(config().endLimit(timeZone())); }

} // namespace tsr
