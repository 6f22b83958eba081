#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <ostream>
#include <set>
#include <utility>
#include <vector>

#include "device/PalmProxy.h"
#include "device/PalmRecordBuffer.h"
#include "foundation/CountedPtr.h"
#include "foundation/ItemId.h"
#include "foundation/ItemVersion.h"
#include "state/SeqNumBlock.h"
#include "state/SyncEntry.h"
#include "state/UnidBlock.h"
#include "state/UnidBlockLocator.h"

namespace tsr {

// One item for the listing that goes to the server.
struct ReplicationInfo {
    ItemVersion version;
    std::uint8_t userData;
    std::uint8_t category;
    bool modified;
    bool attributesChanged;
};

// The picture in memory of one application's sync database (docs/sync-database.md has its bytes): which Notes
// item each device record belongs to, and with which CRC and sequence number it was last exchanged. Changes
// are collected here, mark their block as dirty, and reach the handheld in one pass, `rewrite`. After that
// the state isn't used any more.
class ReplicationState {
public:
    using Locator = UnidBlockLocator;

    // The index of the block records, as the CRC blocks hold it.
    struct CrcEntry {
        std::uint8_t category; // 1 for a UNID block, 2 for a sequence number block
        std::uint32_t crc;     // a stored constant, compared with nothing
    };

    // A deletion or modification that Notes hasn't taken yet.
    struct Stub {
        std::uint32_t blockSuid = 0; // the stub block that holds it, 0 for none
        bool removed = false;
        bool archive = false;
    };

    // A copy of a record that the user archived.
    struct ArchivedCopy {
        std::uint32_t suid = 0;               // of its record in the sync database, 0 for none
        CountedPtr<PalmRecordBuffer> content; // null when the copy is no longer wanted
    };

    // Reads the sync database, after deleting what an earlier session left half done. `reserved` isn't used.
    // `fixupLimit` is the most entries that the device takes in one fixup record.
    ReplicationState(std::ostream& log, PalmProxy& palm, int reserved, std::size_t fixupLimit);
    ReplicationState(const ReplicationState&) = delete;
    ReplicationState& operator=(const ReplicationState&) = delete;

    // Queries. Each names what it raises.
    SyncEntry& entry(const ItemId& itemId);             // NoReplicationInfoForUnid, NoReplicationInfoForBlock
    SyncEntry* findEntry(const ItemId& itemId);         // null for an unknown item; NoReplicationInfoForBlock
    SyncEntry* findEntryByUid(std::int32_t uid);        // null for an unknown UID; NoReplicationInfoForUid
    SyncEntry& entryAt(const Locator& locator);         // NoReplicationInfoForBlock
    SeqNumBlock& seqNumBlockOf(const SyncEntry& entry); // NoSequenceBlock
    UnidBlock& unidBlock(std::uint32_t suid);           // NoUnidBlock
    const Unid& unidAt(const Locator& locator) const;   // UnidBlockNotFound, InvalidUnidBlockIndex
    const Dbid& dbidAt(const Locator& locator) const;   // UnidBlockNotFound
    ItemId itemIdOfUid(std::int32_t uid) const;         // NoUnidBlockLocator
    bool isKnownUid(std::int32_t uid) const { return locatorsByUid_.count(uid) != 0; }
    bool hasDeletionStub(std::int32_t uid) const { return deletionStubs_.count(uid) != 0; } // removed or not
    const std::map<std::int32_t, Stub>& deletionStubs() const { return deletionStubs_; }
    const std::map<std::int32_t, Stub>& modificationStubs() const { return modificationStubs_; }
    void listUids(std::vector<std::int32_t>& out) const;   // appends
    void listDeletedItems(std::vector<ItemId>& out) const; // in place of what was there
    void collectReplicationInfo(std::optional<std::uint8_t> category,
                                std::vector<ReplicationInfo>& out) const; // appends

    // Updates.
    void addEntry(const ItemVersion& version, std::uint32_t category, const std::vector<SyncRecord>& records);
    void removeEntry(const ItemId& itemId);
    // With `newUnid` the item has a new identity, and `category` is required.
    void updateEntry(const ItemId& itemId, std::uint32_t sequenceNumber,
                     std::optional<std::uint32_t> userData = {}, std::optional<std::uint32_t> category = {},
                     const std::optional<Unid>& newUnid = {}, std::optional<bool> sendWhole = {});
    void reset(); // sets every item's sequence number to 0
    void addDeletionStub(std::int32_t uid);
    void addModificationStub(std::int32_t uid, bool archived);
    void markModificationStubRemoved(std::int32_t uid); // if there is one
    void resolveDeletions();
    void addDeletedItem(const ItemId& itemId) { deletedItems_.insert(itemId); }
    void setArchivedCopy(std::int32_t uid, std::uint32_t suid, const CountedPtr<PalmRecordBuffer>& content);

    // Writes what changed to the sync database. Whatever fails leaves it half written, which its status
    // record tells.
    void rewrite(PalmProxy& palm);

private:
    template <typename Block>
    using Blocks = std::map<std::int32_t, Block>;

    // Reading.
    void readStatus(PalmProxy& palm, PalmRecordBuffer& buffer);
    void deleteLeftovers(PalmProxy& palm, PalmRecordBuffer& buffer);
    void readCrcBlocks(PalmProxy& palm, PalmRecordBuffer& buffer);
    void readUnidBlocks(PalmProxy& palm, PalmRecordBuffer& buffer);
    UnidBlock parseUnidBlock(std::uint32_t suid, PalmRecordBuffer& buffer);
    void readSeqNumBlocks(PalmProxy& palm, PalmRecordBuffer& buffer);
    void readItem(std::uint32_t suid, std::uint32_t unidBlockSuid, PalmRecordBuffer& buffer);
    SyncEntry parseEntry(std::uint32_t suid, std::uint32_t unidIndex, PalmRecordBuffer& buffer);
    void readArchivedCopies(PalmProxy& palm, PalmRecordBuffer& buffer);
    void readStubs(PalmProxy& palm, PalmRecordBuffer& buffer);
    void readStub(std::uint32_t blockSuid, PalmRecordBuffer& buffer);
    void clearDirty();
    void pruneUnidBlocks();

    // Updating.
    Blocks<SeqNumBlock>::iterator addSeqNumBlock(std::int32_t key, std::int32_t unidBlockSuid);
    Blocks<SeqNumBlock>::iterator bestSeqNumBlock(std::int32_t unidBlockSuid);
    std::int32_t unidBlockFor(const Dbid& dbid);
    std::int32_t seqNumBlockFor(std::int32_t unidBlockSuid, std::uint32_t index);
    void removeStubsOf(const SyncEntry& entry);
    void removeDeletionStub(std::int32_t uid);
    bool removeModificationStub(std::int32_t uid); // whether it told of an archived record
    const UnidBlock& blockAt(const Locator& locator) const;

    // Rewriting; the lists live as long as one rewrite.
    struct Rewrite;
    void writeStatus(PalmProxy& palm, std::uint8_t status);
    void writeUnidBlocks(Rewrite& work);
    std::uint32_t writeUnidBlock(Rewrite& work, std::int32_t key, const UnidBlock& block);
    void writeSeqNumBlocks(Rewrite& work);
    std::uint32_t writeSeqNumBlock(Rewrite& work, std::int32_t key, const SeqNumBlock& block);
    void deleteSeqNumBlock(Rewrite& work, std::int32_t key);
    void writeFixups(Rewrite& work);
    void deleteUnusedUnidBlocks(Rewrite& work);
    void placeStubs(Rewrite& work);
    void placeStub(Rewrite& work, std::int32_t uid, std::uint8_t type, const Stub& stub);
    void writeArchivedCopies(Rewrite& work);
    void writeStubBlocks(Rewrite& work);
    void writeCrcBlocks(Rewrite& work);

    std::ostream& log_;
    std::size_t fixupLimit_;
    bool lastSyncSuccessful_ = false; // for the log alone
    std::uint32_t statusRecordUid_ = 0;

    std::map<Locator, SyncEntry> entries_;
    std::map<std::int32_t, Locator> locatorsByUid_; // never 0
    std::map<ItemId, Locator> locatorsByItem_;
    std::map<std::uint32_t, CrcEntry> crcEntries_;
    std::vector<std::uint32_t> crcBlockUids_;
    Blocks<UnidBlock> unidBlocks_; // keys of 0 and below aren't on the device yet
    Blocks<UnidBlock>::iterator currentUnidBlock_;
    Blocks<SeqNumBlock> seqNumBlocks_;
    Blocks<SeqNumBlock>::iterator currentSeqNumBlock_;
    std::set<std::pair<std::int32_t, std::int32_t>> seqNumBlockKeys_; // each behind the key of its UNID block
    std::map<std::int32_t, Stub> deletionStubs_;
    std::map<std::int32_t, Stub> modificationStubs_;
    std::set<ItemId> deletedItems_; // all of whose records the device has deleted
    std::map<std::int32_t, ArchivedCopy> archivedCopies_;
};

} // namespace tsr
