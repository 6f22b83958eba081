// Writing a sync database back. The order is the design: a UNID block must have its SUID before sequence
// number blocks can name it, a sequence number block before a fixup can name it, and the status record frames
// the whole.

#include <algorithm>

#include "device/identifiers.h"
#include "foundation/GeneralError.h"
#include "foundation/hexadecimal.h"
#include "state/ReplicationState.h"
#include "state/SyncCategory.h"

namespace tsr {

namespace {

constexpr std::uint32_t storedCrc = 777; // a constant of the format, not a checksum
constexpr std::size_t crcEntriesPerBlock = 5;
constexpr std::size_t stubBlockBytes = 400; // a new stub block that holds more takes no further stub

void startBlock(PalmRecordBuffer& buffer, std::int16_t category) {
    buffer.setCategoryId(category);
    buffer.appendByte(0);
}

// The id under which a block is written: a key of 0 or below isn't on the device yet.
std::uint32_t recordIdOf(std::int32_t key) { return key > 0 ? static_cast<std::uint32_t>(key) : 0; }

// Behind the run of consecutive indexes that begins with `from`.
template <typename Iterator>
Iterator endOfRun(Iterator from, Iterator end) {
    std::uint32_t expected = from->first;
    while (from != end && from->first == expected) {
        ++from;
        ++expected;
    }
    return from;
}

} // namespace

struct ReplicationState::Rewrite {
    PalmProxy& palm;
    std::map<std::int32_t, std::uint32_t>
        unidRemap{}; // from the key of a UNID block to its SUID on the device
    std::vector<FixupEntry> fixups{};
    std::map<std::int64_t, PalmRecordBuffer> stubRecords{}; // by the SUID of the stub block; new ones below 0
    std::int64_t newStubKey = 0;
};

void ReplicationState::rewrite(PalmProxy& palm) {
    Rewrite work{palm};
    log_ << "#t --- Start rewrite of sync information ------------\n";
    writeStatus(palm, PersistStatus::begun);
    writeUnidBlocks(work);
    writeSeqNumBlocks(work);
    writeFixups(work);
    deleteUnusedUnidBlocks(work);
    placeStubs(work);
    writeArchivedCopies(work);
    writeStubBlocks(work);
    writeCrcBlocks(work);
    writeStatus(palm, PersistStatus::finished);
    log_ << "#t --- End rewrite of sync information ------------\n";
}

void ReplicationState::writeStatus(PalmProxy& palm, std::uint8_t status) {
    PalmRecordBuffer buffer;
    startBlock(buffer, SyncCategory::status);
    buffer.appendByte(status);
    statusRecordUid_ = palm.writeSyncRecord(statusRecordUid_, buffer);
}

void ReplicationState::writeUnidBlocks(Rewrite& work) {
    for (const auto& [key, block] : unidBlocks_) {
        if (!block.dirty) {
            work.unidRemap[key] = static_cast<std::uint32_t>(key);
            continue;
        }
        const std::uint32_t suid = writeUnidBlock(work, key, block);
        work.unidRemap[key] = suid;
        crcEntries_.try_emplace(suid, CrcEntry{SyncCategory::unidBlock, storedCrc});
    }
}

std::uint32_t ReplicationState::writeUnidBlock(Rewrite& work, std::int32_t key, const UnidBlock& block) {
    PalmRecordBuffer buffer;
    startBlock(buffer, SyncCategory::unidBlock);
    appendDbid(buffer, block.dbid());
    for (auto run = block.unids().begin(); run != block.unids().end();) {
        const auto end = endOfRun(run, block.unids().end());
        const std::size_t position = buffer.size();
        std::uint16_t count = 0;
        buffer.appendWord(count);
        buffer.appendWord(static_cast<std::uint16_t>(run->first));
        for (; run != end; ++run, ++count) appendUnid(buffer, run->second);
        buffer.putWord(count, position);
    }
    const std::uint32_t suid = work.palm.writeSyncRecord(recordIdOf(key), buffer);
    log_ << "#t $op unid block SUID=$suid ($n entries)" << Tag("op") << (key > 0 ? "Rewriting" : "Creating")
         << Tag("suid") << toHex(suid) << Tag('n') << block.unids().size() << '\n';
    return suid;
}

void ReplicationState::writeSeqNumBlocks(Rewrite& work) {
    for (const auto& [key, block] : seqNumBlocks_) {
        if (!block.dirty) continue;
        if (!block.indexes().empty()) {
            const std::uint32_t suid = writeSeqNumBlock(work, key, block);
            crcEntries_.try_emplace(suid, CrcEntry{SyncCategory::seqNumBlock, storedCrc});
        } else if (key > 0) {
            deleteSeqNumBlock(work, key);
        }
    }
}

std::uint32_t ReplicationState::writeSeqNumBlock(Rewrite& work, std::int32_t key, const SeqNumBlock& block) {
    const auto unidSuid = work.unidRemap.find(block.unidBlockSuid());
    if (unidSuid == work.unidRemap.end()) throw GeneralError(Message::NoRemappedUnidBlock);
    PalmRecordBuffer buffer;
    std::vector<FixupEntry> blockFixups;
    startBlock(buffer, SyncCategory::seqNumBlock);
    buffer.append24(unidSuid->second);
    for (const std::uint32_t index : block.indexes()) {
        buffer.appendWord(static_cast<std::uint16_t>(index));
        entryAt(Locator{static_cast<std::uint32_t>(block.unidBlockSuid()), index}).write(buffer, blockFixups);
    }
    const std::uint32_t suid = work.palm.writeSyncRecord(recordIdOf(key), buffer);
    log_ << "#t $op seqnum block SUID=$suid ($n entries)" << Tag("op") << (key > 0 ? "Rewriting" : "Creating")
         << Tag("suid") << toHex(suid) << Tag('n') << block.indexes().size() << '\n';
    for (FixupEntry& fixup : blockFixups) { // held back until now: only the write tells the SUID
        fixup.blockSuid = suid;
        work.fixups.push_back(fixup);
    }
    return suid;
}

void ReplicationState::deleteSeqNumBlock(Rewrite& work, std::int32_t key) {
    const auto suid = static_cast<std::uint32_t>(key);
    log_ << "#t Deleting seqnum block SUID=$suid" << Tag("suid") << toHex(suid) << '\n';
    work.palm.deleteSyncRecord(suid);
    if (crcEntries_.erase(suid) == 0) throw GeneralError(Message::NoCrcEntryForBlock) << Tag("suid") << suid;
}

void ReplicationState::writeFixups(Rewrite& work) {
    for (std::size_t start = 0; start < work.fixups.size();) {
        const std::size_t end = std::min(start + fixupLimit_, work.fixups.size());
        const std::size_t count = end - start;
        PalmRecordBuffer buffer;
        startBlock(buffer, SyncCategory::fixup);
        for (; start < end; ++start) {
            buffer.append24(work.fixups[start].pendingUid);
            buffer.append24(work.fixups[start].blockSuid);
            buffer.appendWord(static_cast<std::uint16_t>(work.fixups[start].offset));
        }
        const std::uint32_t suid = work.palm.writeNewSyncRecord(buffer);
        log_ << "#t Creating fixup record SUID=$suid ($n entries)" << Tag("suid") << toHex(suid) << Tag('n')
             << count << '\n';
    }
}

// Deliberate: a block that was new in this session has got its SUID meanwhile, and is still deleted under its
// key.
void ReplicationState::deleteUnusedUnidBlocks(Rewrite& work) {
    std::set<std::int32_t> used;
    for (const auto& [key, block] : seqNumBlocks_) {
        if (!block.indexes().empty()) used.insert(block.unidBlockSuid());
    }
    for (const auto& [key, block] : unidBlocks_) {
        if (used.count(key) != 0) continue;
        const auto suid = static_cast<std::uint32_t>(key);
        log_ << "#t Deleting unid block SUID=$suid" << Tag("suid") << toHex(suid) << '\n';
        work.palm.deleteSyncRecord(suid);
        if (crcEntries_.erase(suid) == 0)
            throw GeneralError(Message::NoCrcEntryForSequenceBlock) << Tag("suid") << suid;
    }
}

void ReplicationState::placeStubs(Rewrite& work) {
    for (const auto& [uid, stub] : deletionStubs_) placeStub(work, uid, StubType::deletion, stub);
    for (const auto& [uid, stub] : modificationStubs_) {
        placeStub(work, uid, stub.archive ? StubType::archive : StubType::modification, stub);
    }
}

// A block on the device is built anew from the stubs that still belong to it; one that has lost them all
// stays empty.
void ReplicationState::placeStub(Rewrite& work, std::int32_t uid, std::uint8_t type, const Stub& stub) {
    PalmRecordBuffer* buffer = nullptr;
    if (stub.blockSuid != 0) {
        buffer = &work.stubRecords[stub.blockSuid];
        buffer->setCategoryId(SyncCategory::stubBlock);
        if (stub.removed) return;
        if (buffer->isEmpty()) buffer->appendByte(0);
    } else {
        if (stub.removed) return;
        if (work.newStubKey == 0 || work.stubRecords[work.newStubKey].size() > stubBlockBytes) {
            startBlock(work.stubRecords[--work.newStubKey], SyncCategory::stubBlock);
        }
        buffer = &work.stubRecords[work.newStubKey];
    }
    buffer->appendByte(type);
    buffer->append24(static_cast<std::uint32_t>(uid));
}

void ReplicationState::writeArchivedCopies(Rewrite& work) {
    for (const auto& [uid, copy] : archivedCopies_) {
        if (copy.content && copy.suid == 0) {
            PalmRecordBuffer buffer;
            buffer.setCategoryId(SyncCategory::archivedCopy);
            buffer.append24(static_cast<std::uint32_t>(uid));
            buffer.appendByte(static_cast<std::uint8_t>(copy.content->categoryId()));
            buffer.appendBytes(copy.content->data(), copy.content->size());
            work.palm.writeNewSyncRecord(buffer);
        } else if (!copy.content && copy.suid != 0) {
            work.palm.deleteSyncRecord(copy.suid);
        }
    }
}

void ReplicationState::writeStubBlocks(Rewrite& work) {
    for (auto& [key, buffer] : work.stubRecords) {
        const std::uint32_t old = key > 0 ? static_cast<std::uint32_t>(key) : 0;
        if (buffer.isEmpty()) {
            log_ << "#t Deleting stub block SUID=$suid" << Tag("suid") << toHex(old) << '\n';
            work.palm.deleteSyncRecord(old);
        } else if (key < 0) {
            const std::uint32_t suid = work.palm.writeNewSyncRecord(buffer);
            log_ << "#t Creating stub block SUID=$suid" << Tag("suid") << toHex(suid) << '\n';
        } else {
            log_ << "#t Rewriting stub block SUID=$suid" << Tag("suid") << toHex(old) << '\n';
            work.palm.writeSyncRecord(old, buffer);
        }
    }
}

void ReplicationState::writeCrcBlocks(Rewrite& work) {
    for (const std::uint32_t uid : crcBlockUids_) {
        log_ << "#t Deleting crc block SUID=$suid" << Tag("suid") << toHex(uid) << '\n';
        work.palm.deleteSyncRecord(uid);
    }
    for (auto entry = crcEntries_.begin(); entry != crcEntries_.end();) {
        PalmRecordBuffer buffer;
        startBlock(buffer, SyncCategory::crcBlock);
        std::size_t count = 0;
        for (; entry != crcEntries_.end() && count < crcEntriesPerBlock; ++entry, ++count) {
            buffer.appendByte(entry->second.category);
            buffer.append24(entry->first);
            buffer.appendDword(entry->second.crc);
        }
        const std::uint32_t suid = work.palm.writeNewSyncRecord(buffer);
        log_ << "#t Rewriting crc block SUID=$suid ($n entries)" << Tag("suid") << toHex(suid) << Tag('n')
             << count << '\n';
    }
}

} // namespace tsr
