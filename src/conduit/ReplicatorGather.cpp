// Finding what changed on the device.

#include <algorithm>

#include "conduit/Replicator.h"
#include "foundation/GeneralError.h"
#include "foundation/hexadecimal.h"
#include "records/PalmDummyRecord.h"

namespace tsr {

namespace {

constexpr std::size_t uidDigits = 8;

bool isUnreadable(const PalmApplicationRecord& record) {
    return dynamic_cast<const PalmDummyRecord*>(&record) != nullptr;
}

std::int32_t keyOf(std::uint32_t uid) { return static_cast<std::int32_t>(uid); }

} // namespace

Replicator::Record Replicator::readRecord(PalmRecordBuffer& buffer, std::uint32_t uid, bool archived) {
    try {
        return makePalmRecord(buffer, archived);
    } catch (const Error& error) {
        logErrorChain(GeneralError(Message::RecordUnreadable, error) << Tag("uid") << toHexWord(uid));
        log() << binaryToHex(std::vector<std::uint8_t>(buffer.data(), buffer.data() + buffer.size())) << '\n';
        return Record(new PalmDummyRecord);
    }
}

void Replicator::gatherModified() {
    std::vector<std::uint32_t> deletedUids;
    if (storedType() != ReplicationType::Reset) {
        if (replicationType_ == ReplicationType::Slow) {
            readAllRecords(deletedUids);
        } else {
            readFlaggedRecords(deletedUids);
        }
    }
    for (const std::uint32_t uid : deletedUids) state().addDeletionStub(keyOf(uid));
    for (const auto& [uid, stub] : state().deletionStubs()) widenToItem(static_cast<std::uint32_t>(uid));
    for (const auto& [uid, record] : modified_) {
        state().addModificationStub(keyOf(uid), record && record->archived());
    }
    for (const auto& [uid, stub] :
         state().modificationStubs()) { // what a failed session didn't get to deliver
        if (!stub.removed) modified_.try_emplace(static_cast<std::uint32_t>(uid));
    }
    std::vector<std::uint32_t> changed;
    for (const auto& [uid, record] : modified_) changed.push_back(uid);
    for (const std::uint32_t uid : changed) widenToItem(uid);
    state().resolveDeletions();
}

void Replicator::readFlaggedRecords(std::vector<std::uint32_t>& deletedUids) {
    log() << "#t Getting modified application records ...\n";
    PalmRecordBuffer buffer;
    for (bool more = palm().readFirstModified(buffer); more; more = palm().readNextModified(buffer)) {
        gatherRecord(buffer, deletedUids);
    }
}

void Replicator::readAllRecords(std::vector<std::uint32_t>& deletedUids) {
    log() << "#t Getting modified application records ...\n";
    std::vector<std::uint32_t> seenUids;
    PalmRecordBuffer buffer;
    for (std::uint32_t index = 0; index <= 0xFFFF; ++index) {
        if (!palm().readRecordByIndex(buffer, static_cast<std::uint16_t>(index))) break;
        seenUids.push_back(buffer.recordId());
        gatherRecord(buffer, deletedUids);
    }
    std::vector<std::int32_t> listed;
    state().listUids(listed);
    std::vector<std::uint32_t> known(listed.begin(), listed.end());
    std::sort(known.begin(), known.end());
    std::sort(seenUids.begin(), seenUids.end());
    std::set_difference(known.begin(), known.end(), seenUids.begin(), seenUids.end(),
                        std::back_inserter(deletedUids)); // a record that is simply gone counts as deleted
    std::sort(deletedUids.begin(), deletedUids.end());
    deletedUids.erase(std::unique(deletedUids.begin(), deletedUids.end()), deletedUids.end());
}

void Replicator::gatherRecord(PalmRecordBuffer& buffer, std::vector<std::uint32_t>& deletedUids) {
    const std::uint32_t uid = buffer.recordId();
    if (buffer.isDeleted()) {
        deletedUids.push_back(uid);
    } else if (buffer.isArchived()) {
        state().setArchivedCopy(keyOf(uid), 0, makeCounted<PalmRecordBuffer>(buffer));
        modified_[uid] = readRecord(buffer, uid, true);
    } else {
        gatherOrdinaryRecord(buffer);
    }
}

// A record that is flagged but whose CRC and category are those of the last exchange isn't entered: this is
// what stops a record from bouncing back and forth.
void Replicator::gatherOrdinaryRecord(PalmRecordBuffer& buffer) {
    const std::uint32_t uid = buffer.recordId();
    SyncEntry* const entry = state().findEntryByUid(keyOf(uid));
    const Record record = readRecord(buffer, uid, false);
    if (entry != nullptr
        && record->syncEntryUserData()
               != entry->userData()) { // the entry is written back, the record not sent for it
        entry->setUserData(record->syncEntryUserData());
        state().seqNumBlockOf(*entry).dirty = true;
        entry->setAttributesChanged();
    }
    if (entry == nullptr || isUnreadable(*record) || record->crc() != entry->crcOfUid(keyOf(uid))
        || record->category() != entry->category()) {
        modified_[uid] = record;
    }
}

// A change in one of several records of an item can oblige the sending of all. The item is then given up
// under its old identity, which Notes deletes, and its records go as new ones.
void Replicator::widenToItem(std::uint32_t uid) {
    SyncEntry* const entry = state().findEntryByUid(keyOf(uid));
    if (entry == nullptr || entry->records().size() == 1) return;
    if (entry->tagOfUid(keyOf(uid)) != 0 && !entry->sendWhole()) return;
    state().addDeletedItem(state().itemIdOfUid(keyOf(uid)));
    entry->setMarkedWhole();
    for (const SyncRecord& record : entry->records()) {
        if (!state().hasDeletionStub(record.uid))
            modified_.try_emplace(static_cast<std::uint32_t>(record.uid));
    }
}

} // namespace tsr
