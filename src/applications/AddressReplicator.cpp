#include "applications/AddressReplicator.h"

#include "applications/singleRecord.h"
#include "records/addressConversion.h"
#include "server/commands.h"

namespace tsr {

AddressReplicator::AddressReplicator(const CountedPtr<PalmProxy>& palm)
    : ItemReplicator(traits_, addressCommands, "Address items", palm), categories_(palm, log()) {}

PalmRecordGroup AddressReplicator::convertToPalm(const NotesApplicationRecord& record, bool& resendWanted) {
    resendWanted = false;
    const auto& notes = static_cast<const NotesAddressRecord&>(record); // made by makeNotesRecord
    PalmAddressRecord palm = toPalmAddressRecord(notes);
    palm.setCategory(categories_.category(notes.categories, ApplicationCategories::EmptyNames::Skip));
    return groupOf(palm);
}

CountedPtr<NotesApplicationRecord> AddressReplicator::convertToNotes(const PalmRecordGroup& group, bool,
                                                                     int) {
    const auto& palm = singleRecord<PalmAddressRecord>(group);
    const auto notes = makeCounted<NotesAddressRecord>(toNotesAddressRecord(palm));
    notes->categories = categories_.names(palm.category());
    return notes;
}

ItemVersion AddressReplicator::sendAnomalyItem(const std::string& token, const ItemId& itemId,
                                               const NotesApplicationRecord& record, std::string& newUnid) {
    return ReplicatorImpl::sendAnomalyItem(server(), token, addressCommands.sendAnomaly, itemId,
                                           itemOf(record), true, newUnid);
}

ItemVersion AddressReplicator::sendItem(const std::string&, const std::string& token, const ItemId& itemId,
                                        const NotesApplicationRecord& record) {
    return sendAddressItem(server(), token, itemId, itemOf(record));
}

void AddressReplicator::sendDeletionList(const std::vector<ItemId>& items, std::vector<ItemId>& deleted) {
    ReplicatorImpl::sendDeletions(server(), addressCommands.sendDeletions, true, items, deleted);
}

CountedPtr<NotesApplicationRecord> AddressReplicator::makeNotesRecord(const NotesItem& item) {
    return makeCounted<NotesAddressRecord>(item, timeZone());
}

Replicator::Record AddressReplicator::makePalmRecord(PalmRecordBuffer& buffer, bool archived) {
    return makeCounted<PalmAddressRecord>(buffer, archived);
}

} // namespace tsr
