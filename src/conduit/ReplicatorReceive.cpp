// Putting what Notes sends, and what it deletes, on the device.

#include <algorithm>

#include "conduit/Replicator.h"
#include "foundation/GeneralError.h"
#include "foundation/PalmSyncApiError.h"
#include "foundation/internalError.h"
#include "state/SyncCategory.h"

namespace tsr {

namespace {

// The record of a tag in a group that comes from Notes, where no member stands for a deleted record.
const PalmApplicationRecord& received(const PalmRecordGroup& group, std::uint32_t tag) {
    const PalmRecordGroup::Member& record = group.get(tag);
    if (!record) throw internalError("Replicator", __LINE__);
    return *record;
}

} // namespace

void Replicator::receiveItems(const std::string& className, const std::string& token) {
    std::vector<std::string> handles;
    listItemsToReceive(token, handles);
    log() << "#t There are $n items to receive" << Tag('n') << handles.size() << '\n';
    for (const std::string& handle : handles) receiveOneItem(className, token, handle);
}

// Neither the state nor the server hears of an item that fails: the server offers it again.
void Replicator::receiveOneItem(const std::string& className, const std::string& token,
                                const std::string& handle) {
    ItemVersion version;
    CountedPtr<NotesApplicationRecord> notes;
    try {
        NotesItem item;
        receiveItem(className, token, handle, item, version);
        notes = makeNotesRecord(item);
    } catch (const Error& error) {
        logErrorChain(GeneralError(Message::ReceiveItemFailed, error) << Tag("id") << handle);
        return;
    }
    PalmRecordGroup group;
    bool resendWanted = false;
    Message failure = Message::ConvertToPalmFailed;
    try {
        group = convertToPalm(*notes, resendWanted);
        failure = Message::WriteGroupFailed;
        storeItem(version, group, resendWanted);
    } catch (const Error& error) {
        logErrorChain(GeneralError(failure, error)
                      << Tag('d') << version.id().dbidText() << Tag('u') << version.id().unidText());
    }
}

void Replicator::storeItem(const ItemVersion& version, const PalmRecordGroup& group, bool resendWanted) {
    SyncEntry* const info = state().findEntry(version.id());
    if (info == nullptr) {
        storeNewItem(version, group);
    } else {
        storeInEntry(*info, group);
    }
    state().updateEntry(version.id(), version.sequenceNumber(), group.syncEntryUserData(), group.category(),
                        {}, resendWanted);
}

void Replicator::storeInEntry(SyncEntry& info, const PalmRecordGroup& group) {
    std::vector<std::uint32_t> groupTags;
    std::vector<std::uint32_t> infoTags;
    group.tags(groupTags);
    info.tags(infoTags);
    std::vector<std::uint32_t> removedTags;
    std::vector<std::uint32_t> keptTags;
    std::vector<std::uint32_t> addedTags;
    std::set_difference(infoTags.begin(), infoTags.end(), groupTags.begin(), groupTags.end(),
                        std::back_inserter(removedTags));
    std::set_intersection(groupTags.begin(), groupTags.end(), infoTags.begin(), infoTags.end(),
                          std::back_inserter(keptTags));
    std::set_difference(groupTags.begin(), groupTags.end(), infoTags.begin(), infoTags.end(),
                        std::back_inserter(addedTags));
    for (const std::uint32_t tag : removedTags) {
        palm().deleteRecord(static_cast<std::uint32_t>(info.uidOfTag(tag)));
        info.removeRecordByTag(tag);
    }
    for (const std::uint32_t tag : keptTags) replaceRecord(info, tag, received(group, tag));
    for (const std::uint32_t tag : addedTags) {
        PalmRecordBuffer buffer;
        const std::uint16_t crc = received(group, tag).write(buffer);
        const std::uint32_t uid = palm().writeRecord(0, buffer);
        info.setRecord(tag, static_cast<std::int32_t>(uid), crc);
    }
}

// An unchanged record isn't written, so that it doesn't come back as modified.
void Replicator::replaceRecord(SyncEntry& info, std::uint32_t tag, const PalmApplicationRecord& record) {
    PalmRecordBuffer buffer;
    const std::uint16_t crc = record.write(buffer);
    if (storedType() != ReplicationType::Reset && crc == info.crcOfTag(tag)
        && record.category() == info.category() && record.syncEntryUserData() == info.userData()) {
        return;
    }
    const std::int32_t uid = info.uidOfTag(tag);
    palm().writeRecord(static_cast<std::uint32_t>(uid), buffer);
    info.setRecord(tag, uid, crc);
}

// A new record can't go to the application database at once: it waits in the sync database, behind a zero
// byte and its category, until the device moves it in the copy step.
void Replicator::storeNewItem(const ItemVersion& version, const PalmRecordGroup& group) {
    const std::uint8_t category = group.category();
    std::vector<SyncRecord> records;
    for (const auto& [tag, member] : group) {
        PalmRecordBuffer buffer;
        buffer.appendWord(0);
        const std::uint16_t crc = received(group, tag).write(buffer);
        buffer.putByte(category, 1);
        buffer.setCategoryId(SyncCategory::pendingRecord);
        const std::uint32_t uid = palm().writeNewSyncRecord(buffer);
        records.push_back(SyncRecord{-static_cast<std::int32_t>(uid), crc, tag, false});
    }
    state().addEntry(version, category, records);
}

void Replicator::receiveDeletions(const std::string& token) {
    std::vector<ItemId> items;
    fetchDeletedInNotes(token, items);
    log() << "#t There are $n items to delete from the handheld" << Tag('n') << items.size() << '\n';
    for (const ItemId& item : items) {
        const SyncEntry& info = state().entry(item);
        try {
            for (const SyncRecord& record : info.records()) {
                try {
                    palm().deleteRecord(static_cast<std::uint32_t>(record.uid));
                } catch (const PalmSyncApiError& error) {
                    if (!error.isNotFound()) throw; // what has gone already needs no deleting
                }
            }
            state().removeEntry(item);
        } catch (...) { // deliberate: Notes lists the item again next time
        }
    }
}

} // namespace tsr
