// Reading a sync database: the constructor of ReplicationState.

#include "state/ReplicationState.h"

#include "device/identifiers.h"
#include "foundation/GeneralError.h"
#include "foundation/hexadecimal.h"
#include "state/SyncCategory.h"

namespace tsr {

namespace {

constexpr std::size_t crcEntryBytes = 8;
constexpr std::size_t stubBytes = 4;
constexpr std::size_t uidDigits = 6;
constexpr std::size_t crcDigits = 8;

// Calls `visit` for each record of a category, its leading byte still unread.
template <typename Visit>
void forEachRecord(PalmProxy& palm, PalmRecordBuffer& buffer, std::int16_t category, Visit visit) {
    for (bool more = palm.readFirstInSyncCategory(buffer, category); more;
         more = palm.readNextInSyncCategory(buffer)) {
        visit();
    }
}

void skipLeadingByte(PalmRecordBuffer& buffer) { buffer.readByte(); }

} // namespace

ReplicationState::ReplicationState(std::ostream& log, PalmProxy& palm, int, std::size_t fixupLimit)
    : log_(log), fixupLimit_(fixupLimit), currentUnidBlock_(unidBlocks_.end()),
      currentSeqNumBlock_(seqNumBlocks_.end()) {
    PalmRecordBuffer buffer;
    log_ << "#t --- Reading sync data ----------------------\n";
    readStatus(palm, buffer);
    deleteLeftovers(palm, buffer);
    readCrcBlocks(palm, buffer);
    readUnidBlocks(palm, buffer);
    readSeqNumBlocks(palm, buffer);
    readArchivedCopies(palm, buffer);
    readStubs(palm, buffer);
    clearDirty();
    pruneUnidBlocks();
    log_ << "#t --- Finished reading sync data -------------\n";
}

void ReplicationState::readStatus(PalmProxy& palm, PalmRecordBuffer& buffer) {
    if (!palm.readFirstInSyncCategory(buffer, SyncCategory::status)) return;
    skipLeadingByte(buffer);
    lastSyncSuccessful_ = buffer.readByte() == PersistStatus::finished;
    log_ << (lastSyncSuccessful_ ? "#t Last sync successful\n" : "#t Last sync did not finish\n");
    statusRecordUid_ = buffer.recordId();
    if (palm.readNextInSyncCategory(buffer)) throw GeneralError(Message::MultipleStatusRecords);
}

// Deleting would disturb the device's position in a walk, so all are collected first.
void ReplicationState::deleteLeftovers(PalmProxy& palm, PalmRecordBuffer& buffer) {
    std::vector<std::uint32_t> uids;
    const auto collect = [&] { uids.push_back(buffer.recordId()); };
    forEachRecord(palm, buffer, SyncCategory::pendingRecord, collect);
    const std::size_t applicationCount = uids.size();
    forEachRecord(palm, buffer, SyncCategory::fixup, collect);
    for (const std::uint32_t uid : uids) palm.deleteSyncRecord(uid);
    log_ << "#t $n application records deleted from sync database" << Tag('n') << applicationCount << '\n';
    log_ << "#t $n fixup records deleted from sync database" << Tag('n') << uids.size() - applicationCount
         << '\n';
}

void ReplicationState::readCrcBlocks(PalmProxy& palm, PalmRecordBuffer& buffer) {
    forEachRecord(palm, buffer, SyncCategory::crcBlock, [&] {
        crcBlockUids_.push_back(buffer.recordId());
        skipLeadingByte(buffer);
        if (buffer.remaining() % crcEntryBytes != 0) {
            throw GeneralError(Message::InvalidCrcRecordLength) << Tag("uid") << buffer.recordId();
        }
        while (!buffer.atEnd()) {
            const std::uint8_t category = buffer.readByte();
            const std::uint32_t uid = buffer.read24();
            const std::uint32_t crc = buffer.readDword();
            crcEntries_[uid] = CrcEntry{category, crc};
            log_ << "#t CRC entry: Category=$cat, UID=$uid, CRC=$crc" << Tag("cat") << unsigned{category}
                 << Tag("uid") << toHex(uid, uidDigits) << Tag("crc") << toHex(crc, crcDigits) << '\n';
        }
    });
}

void ReplicationState::readUnidBlocks(PalmProxy& palm, PalmRecordBuffer& buffer) {
    for (const auto& [suid, crcEntry] : crcEntries_) {
        if (crcEntry.category != SyncCategory::unidBlock) continue;
        palm.readSyncRecordById(buffer, suid);
        skipLeadingByte(buffer);
        unidBlocks_.insert_or_assign(static_cast<std::int32_t>(suid), parseUnidBlock(suid, buffer));
    }
}

UnidBlock ReplicationState::parseUnidBlock(std::uint32_t suid, PalmRecordBuffer& buffer) {
    UnidBlock block(readDbid(buffer));
    log_ << "#t UNID block: DBID=$dbid, SUID=$suid" << Tag("dbid") << block.dbid() << Tag("suid")
         << toHex(suid) << '\n';
    while (!buffer.atEnd()) {
        const std::uint32_t count = buffer.readWord();
        const std::uint32_t firstIndex = buffer.readWord();
        log_ << "#t $n consecutive records" << Tag('n') << count << '\n';
        for (std::uint32_t index = firstIndex; index != firstIndex + count; ++index) {
            const Unid unid = readUnid(buffer);
            log_ << "#t Index=$n, UNID=$unid" << Tag('n') << toHex(index) << Tag("unid") << unid << '\n';
            block.addUnidAt(index, unid);
        }
    }
    return block;
}

// A second pass over the index, since each item looks its UNID block up.
void ReplicationState::readSeqNumBlocks(PalmProxy& palm, PalmRecordBuffer& buffer) {
    for (const auto& [suid, crcEntry] : crcEntries_) {
        if (crcEntry.category != SyncCategory::seqNumBlock) continue;
        palm.readSyncRecordById(buffer, suid);
        skipLeadingByte(buffer);
        const std::uint32_t unidBlockSuid = buffer.read24();
        log_ << "#t SeqNum block: UNID SUID=$uuid" << Tag("uuid") << toHex(unidBlockSuid) << '\n';
        while (!buffer.atEnd()) readItem(suid, unidBlockSuid, buffer);
    }
}

void ReplicationState::readItem(std::uint32_t suid, std::uint32_t unidBlockSuid, PalmRecordBuffer& buffer) {
    const std::uint32_t unidIndex = buffer.readWord();
    SyncEntry item = parseEntry(suid, unidIndex, buffer);
    const Locator locator{unidBlockSuid, unidIndex};
    const Unid& unid = unidAt(locator);
    locatorsByItem_[ItemId(dbidAt(locator), unid)] = locator;
    bool hasHoles = false;
    for (const SyncRecord& record : item.records()) {
        if (record.uid != 0) {
            locatorsByUid_[record.uid] = locator;
        } else {
            hasHoles = true;
        }
    }
    const auto block =
        addSeqNumBlock(static_cast<std::int32_t>(suid), static_cast<std::int32_t>(unidBlockSuid));
    if (hasHoles) { // new records whose fixups never ran: the item loses them, and Notes offers it again
        item.setSequenceNumber(0);
        item.removeZeroUids();
    }
    entries_.insert_or_assign(locator, std::move(item));
    block->second.addIndex(unidIndex);
}

SyncEntry ReplicationState::parseEntry(std::uint32_t suid, std::uint32_t unidIndex,
                                       PalmRecordBuffer& buffer) {
    const std::uint8_t flags = buffer.readByte();
    const std::uint32_t sequenceNumber = buffer.readWord();
    log_ << "#t UNID Index=$undx, SEQN=$seqn" << Tag("undx") << unidIndex << Tag("seqn") << sequenceNumber
         << '\n';
    const std::uint32_t count = buffer.readWord();
    std::vector<SyncRecord> records;
    for (std::uint32_t read = 0; read == 0 || read < count; ++read) {
        SyncRecord record;
        record.uid = static_cast<std::int32_t>(buffer.read24());
        if (count != 0) { // the short form ends here
            record.tag = buffer.readWord();
            record.crc = buffer.readWord();
        }
        log_ << "#t -- UID=$u, TAG=$t, CRC=$c" << Tag('u') << toHex(static_cast<std::uint32_t>(record.uid))
             << Tag('t') << toHex(record.tag) << Tag('c') << toHex(record.crc) << '\n';
        records.push_back(record);
    }
    SyncEntry item(sequenceNumber, flags & 0xF, flags >> 4 & 7, std::move(records),
                   static_cast<std::int32_t>(suid), unidIndex);
    item.setSendWhole((flags & 0x80) != 0);
    return item;
}

// Deliberate: a copy is read behind a leading byte that the conduit doesn't write.
void ReplicationState::readArchivedCopies(PalmProxy& palm, PalmRecordBuffer& buffer) {
    forEachRecord(palm, buffer, SyncCategory::archivedCopy, [&] {
        skipLeadingByte(buffer);
        const auto uid = static_cast<std::int32_t>(buffer.read24());
        CountedPtr<PalmRecordBuffer> content(new PalmRecordBuffer);
        content->setCategoryId(buffer.readByte());
        content->appendBytes(buffer.data() + buffer.position(), buffer.remaining());
        setArchivedCopy(uid, buffer.recordId(), content);
        log_ << "#t Archived record copy: UID=$uid, SUID=$suid" << Tag("uid")
             << toHex(static_cast<std::uint32_t>(uid), uidDigits) << Tag("suid")
             << toHex(buffer.recordId(), uidDigits) << '\n';
    });
}

void ReplicationState::readStubs(PalmProxy& palm, PalmRecordBuffer& buffer) {
    forEachRecord(palm, buffer, SyncCategory::stubBlock, [&] {
        skipLeadingByte(buffer);
        if (buffer.remaining() % stubBytes != 0) {
            throw GeneralError(Message::InvalidStubLength) << Tag("uid") << buffer.recordId();
        }
        while (!buffer.atEnd()) readStub(buffer.recordId(), buffer);
    });
}

void ReplicationState::readStub(std::uint32_t blockSuid, PalmRecordBuffer& buffer) {
    const std::uint8_t type = buffer.readByte();
    const auto uid = static_cast<std::int32_t>(buffer.read24());
    const std::string uidText = toHex(static_cast<std::uint32_t>(uid), uidDigits);
    switch (type) {
    case StubType::deletion:
        deletionStubs_[uid] = Stub{blockSuid, false, false};
        log_ << "#t Deletion stub: UID=$uid" << Tag("uid") << uidText << '\n';
        return;
    case StubType::modification:
        modificationStubs_[uid] = Stub{blockSuid, false, false};
        log_ << "#t Modification stub: UID=$uid" << Tag("uid") << uidText << '\n';
        return;
    case StubType::archive:
        modificationStubs_[uid] = Stub{blockSuid, false, true};
        log_ << "#t Archive stub: UID=$uid" << Tag("uid") << uidText << '\n';
        return;
    default: throw GeneralError(Message::InvalidStubType) << Tag("uid") << blockSuid << Tag('t') << type;
    }
}

void ReplicationState::clearDirty() {
    for (auto& [suid, block] : unidBlocks_) block.dirty = false;
    for (auto& [suid, block] : seqNumBlocks_) block.dirty = false;
}

// Drops the UNIDs that no item uses from memory. Only a block that has lost half of them is worth a rewrite.
void ReplicationState::pruneUnidBlocks() {
    std::map<std::uint32_t, std::set<std::uint32_t>> used;
    for (const auto& [itemId, locator] : locatorsByItem_)
        used[locator.unidBlockSuid].insert(locator.unidIndex);
    for (const auto& [suid, indexes] : used) {
        UnidBlock& block = unidBlock(suid);
        const std::size_t before = block.unids().size();
        block.removeIf([&indexes = indexes](std::uint32_t index) { return indexes.count(index) == 0; });
        if (before >= 2 * block.unids().size()) block.dirty = true;
    }
}

} // namespace tsr
