// Telling the server what changed, and answering its requests.

#include <algorithm>

#include "conduit/Replicator.h"
#include "foundation/GeneralError.h"
#include "foundation/PalmSyncApiError.h"
#include "foundation/ServerRequestError.h"
#include "foundation/internalError.h"
#include "foundation/numbers.h"
#include "foundation/signals.h"
#include "records/PalmDummyRecord.h"

namespace tsr {

namespace {

// Of what tells the server about an item: two identities and two numbers, each with its terminator.
constexpr std::size_t entryBytes = 17 + 33 + 6 + 7;

constexpr char source[] = "Replicator";
constexpr std::uint32_t copyFunction = 6;
constexpr std::uint32_t copyComplete = 17;
constexpr std::uint32_t mostPasses =
    65536; // a database holds at most 65,535 records, and each pass moves one or more

// For what was expected since an earlier failure.
GeneralError failedBefore() { return GeneralError(Message::ItemHasFailedBefore); }

} // namespace

void Replicator::sendDeletions() {
    std::vector<ItemId> items;
    state().listDeletedItems(items);
    if (items.empty()) return;
    log() << "#t Sending $n deletions to server ..." << Tag('n') << items.size() << '\n';
    std::vector<ItemId> deleted;
    sendDeletionList(items, deleted);
    for (const ItemId& item : deleted) state().removeEntry(item);
    std::sort(items.begin(), items.end());
    std::sort(deleted.begin(), deleted.end());
    for (const ItemId& item :
         items) { // what Notes kept stays in the state, and is sent again in the next session
        if (std::binary_search(deleted.begin(), deleted.end(), item)) continue;
        log() << "#t Notes item UNID=$unid could not be deleted" << Tag("unid") << item.unidText() << '\n';
    }
}

void Replicator::sendNewRecords(const std::string& className) {
    for (auto& [uid, record] : modified_) sendNewRecord(className, uid, record);
}

void Replicator::sendNewRecord(const std::string& className, std::uint32_t uid, Record& record) {
    std::uint8_t category = 0;
    if (categoryOfClass(className, category)) {
        if (!record && !readNewRecord(uid, record)) return; // its category is known only now
        const bool readable = dynamic_cast<const PalmDummyRecord*>(record.get()) == nullptr;
        if (readable && record->category() != category) return;
    }
    SyncEntry* const entry = state().findEntryByUid(static_cast<std::int32_t>(uid));
    if (entry != nullptr && !entry->isMarkedWhole()) {
        log() << "#t ** Need to flag for the replication list\n";
        entry->setModified();
        return;
    }
    log() << "#t Sending new record uid=$uid to server ... " << Tag("uid") << uid << '\n';
    if (!record && !readNewRecord(uid, record)) return;
    PalmRecordGroup group;
    group.set(0, record);
    CountedPtr<NotesApplicationRecord> notes;
    try {
        notes = convertToNotes(group, false, 0);
    } catch (const BadPalmRecord&) {
        logErrorChain(failedBefore());
        return;
    }
    ItemVersion version;
    try {
        version = sendItem(className, std::string(), ItemId(), *notes);
    } catch (const ServerRequestError& error) {
        logErrorChain(GeneralError(Message::SendItemFailed, error) << Tag('s') << notes->description());
        return;
    }
    state().addEntry(version, record->category(),
                     {SyncRecord{static_cast<std::int32_t>(uid), record->crc(), 0, false}});
}

// False for a record that has gone since its stub was written: it gives up the stub, so that one vanished
// record doesn't end this and every later session.
bool Replicator::readNewRecord(std::uint32_t uid, Record& record) {
    log() << "#t Getting application record with uid=$uid" << Tag("uid") << uid << '\n';
    try {
        record = readApplicationRecord(uid);
        return true;
    } catch (const PalmSyncApiError& error) {
        if (!error.isNotFound()) throw;
        state().markModificationStubRemoved(static_cast<std::int32_t>(uid));
        return false;
    }
}

Replicator::Record Replicator::readApplicationRecord(std::uint32_t uid) {
    PalmRecordBuffer buffer;
    palm().readRecordById(buffer, uid);
    return readRecord(buffer, uid, buffer.isArchived());
}

void Replicator::collectReplicationEntries(const std::string& className, StringRun& out) {
    std::uint8_t category = 0;
    const bool hasCategory = categoryOfClass(className, category);
    std::vector<ReplicationInfo> items;
    state().collectReplicationInfo(hasCategory ? std::optional<std::uint8_t>(category) : std::nullopt, items);
    std::size_t modified = 0;
    out.reserve(entryBytes * items.size());
    for (const ReplicationInfo& item : items) {
        const std::uint32_t number = item.version.sequenceNumber();
        out.add(item.version.id().dbidText());
        out.add(item.version.id().unidText());
        out.add(toDecimal(number));
        out.add(toDecimal(item.modified ? number + 1 : number));
        if (item.modified) ++modified;
    }
    logReplicationEntries(modified, items.size());
}

void Replicator::logReplicationEntries(std::size_t modified, std::size_t all) {
    log() << "#t Sending replication information ($m modified, $n non-modified) ..." << Tag('m') << modified
          << Tag('n') << all - modified << '\n';
}

std::string Replicator::sendReplicationEntries(const std::string& className) {
    StringRun entries;
    collectReplicationEntries(className, entries);
    return sendReplicationInfo(className, entries);
}

void Replicator::sendItems(const std::string& className, const std::string& token, bool anomalies) {
    std::vector<ItemId> items;
    if (anomalies) {
        fetchAnomalies(token, items);
    } else {
        fetchWantedItems(token, items);
    }
    log() << "#t There are $n $i to send" << Tag('n') << items.size() << Tag('i')
          << (anomalies ? "anomalies" : "items") << '\n';
    for (const ItemId& item : items) {
        try {
            sendOneItem(className, token, item, anomalies, state().entry(item));
        } catch (const RecordDeletedFromDevice&) {
            state().removeEntry(item);
        } catch (const BadPalmRecord&) {
            logErrorChain(failedBefore());
        }
    }
}

void Replicator::sendOneItem(const std::string& className, const std::string& token, const ItemId& itemId,
                             bool anomalies, SyncEntry& info) {
    const std::int32_t primaryUid = info.uidOfTag(0);
    const auto primary = static_cast<std::uint32_t>(primaryUid);
    if (sendsWantedInFull()) modified_.try_emplace(primary);
    const bool wasModified = modified_.count(primary) != 0;
    const PalmRecordGroup group = groupToSend(info, primaryUid, wasModified);
    const CountedPtr<NotesApplicationRecord> notes = convertToNotes(group, wasModified, 0);
    ItemVersion version;
    std::optional<Unid> newUnid;
    try {
        if (anomalies) {
            std::string unidText;
            version = sendAnomalyItem(token, itemId, *notes, unidText);
            if (!unidText.empty()) newUnid = Unid(unidText);
        } else {
            version = sendItem(className, token, itemId, *notes);
        }
    } catch (const Error& error) {
        logErrorChain(GeneralError(Message::SendItemFailed, error) << Tag('s') << notes->description());
        return;
    }
    noteSent(info, primaryUid);
    // With a new identity the entry is still found under the one that the server had listed.
    state().updateEntry(newUnid ? itemId : version.id(), version.sequenceNumber(), group.syncEntryUserData(),
                        group.category(), newUnid);
}

PalmRecordGroup Replicator::groupToSend(const SyncEntry& info, std::int32_t primaryUid, bool wasModified) {
    PalmRecordGroup group;
    if (wasModified) {
        for (const SyncRecord& record : info.records()) {
            if (record.tag != 0) throw internalError(source, __LINE__);
        }
        group.set(0, modifiedRecord(static_cast<std::uint32_t>(primaryUid)));
        return group;
    }
    const bool primaryDeleted = state().hasDeletionStub(primaryUid);
    if (primaryDeleted) group.set(0, nullptr);
    for (const SyncRecord& record : info.records()) {
        if (record.uid == primaryUid) continue;
        const auto uid = static_cast<std::uint32_t>(record.uid);
        if (state().hasDeletionStub(record.uid)) {
            if (!primaryDeleted) group.set(record.tag, nullptr);
        } else if (primaryDeleted) {
            group.set(record.tag, modifiedRecord(uid));
        } else if (const auto found = modified_.find(uid); found != modified_.end() && found->second) {
            group.set(record.tag, found->second);
        }
    }
    return group;
}

// The record from the working set, read from the device where that holds none. What was read there stays in
// the set, so that its CRC comes up to date once it is sent.
Replicator::Record Replicator::modifiedRecord(std::uint32_t uid) {
    const auto found = modified_.find(uid);
    if (found != modified_.end() && found->second) return found->second;
    try {
        const Record record = readApplicationRecord(uid);
        if (found != modified_.end()) found->second = record;
        return record;
    } catch (const PalmSyncApiError& error) {
        if (!error.isNotFound()) throw;
        throw RecordDeletedFromDevice();
    }
}

void Replicator::noteSent(SyncEntry& info, std::int32_t primaryUid) {
    const std::vector<SyncRecord> records = info.records();
    for (const SyncRecord& record : records) {
        if (state().hasDeletionStub(record.uid)) info.removeRecordByUid(record.uid);
    }
    for (const SyncRecord& record : records) {
        if (state().hasDeletionStub(record.uid)) continue;
        const auto found = modified_.find(static_cast<std::uint32_t>(record.uid));
        if (found == modified_.end() || !found->second) continue;
        const std::uint32_t tag = record.uid == primaryUid ? 0 : found->second->syncEntryTag();
        info.setRecordByUid(record.uid, tag, found->second->crc());
    }
}

void Replicator::copyFromSyncDb() {
    std::uint32_t x = 0;
    std::uint32_t y = 0;
    for (std::uint32_t pass = 0; pass < mostPasses && x == 0 && y == 0; ++pass) {
        const std::vector<std::string> answer = palm().callModule(copyFunction);
        if (answer.size() != 2) throw GeneralError(Message::CopyResultCount) << Tag('n') << answer.size();
        x = parseUnsigned(answer[0]);
        y = parseUnsigned(answer[1]);
    }
    if (y != copyComplete) throw GeneralError(Message::CopyResultStrings) << Tag('x') << x << Tag('y') << y;
}

} // namespace tsr
