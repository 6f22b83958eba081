#include "state/ReplicationState.h"

#include <limits>

#include "foundation/GeneralError.h"
#include "foundation/hexadecimal.h"

namespace tsr {

namespace {

GeneralError noInformationAt(const UnidBlockLocator& locator) {
    return GeneralError(Message::NoReplicationInfoForBlock)
        << Tag("suid") << static_cast<std::int32_t>(locator.unidBlockSuid) << Tag('n') << locator.unidIndex;
}

GeneralError unknownItem(const ItemId& itemId) {
    return GeneralError(Message::NoReplicationInfoForUnid)
        << Tag('d') << itemId.dbidText() << Tag('u') << itemId.unidText();
}

// The key of one more block that isn't on the device yet.
template <typename Block>
std::int32_t newKey(const std::map<std::int32_t, Block>& blocks) {
    if (blocks.empty() || blocks.begin()->first >= 1) return 0;
    return blocks.begin()->first - 1;
}

std::size_t sizeOf(const UnidBlock& block) { return block.unids().size(); }
std::size_t sizeOf(const SeqNumBlock& block) { return block.indexes().size(); }

// Whether a new item goes to `candidate` rather than to `chosen`: a block that must be rewritten anyway comes
// before a clean one, and one that holds less before one that holds more. Not an order: of blocks that come
// one after the other, in the order of their keys, what was chosen stays unless the next is better.
template <typename Block>
bool isBetter(const Block& candidate, const Block& chosen) {
    return (candidate.dirty && !chosen.dirty) || sizeOf(candidate) < sizeOf(chosen);
}

} // namespace

SyncEntry& ReplicationState::entry(const ItemId& itemId) {
    const auto found = locatorsByItem_.find(itemId);
    if (found == locatorsByItem_.end()) throw unknownItem(itemId);
    return entryAt(found->second);
}

SyncEntry* ReplicationState::findEntry(const ItemId& itemId) {
    const auto found = locatorsByItem_.find(itemId);
    return found == locatorsByItem_.end() ? nullptr : &entryAt(found->second);
}

SyncEntry* ReplicationState::findEntryByUid(std::int32_t uid) {
    const auto locator = locatorsByUid_.find(uid);
    if (locator == locatorsByUid_.end()) return nullptr;
    const auto found = entries_.find(locator->second);
    if (found == entries_.end()) throw GeneralError(Message::NoReplicationInfoForUid) << Tag("uid") << uid;
    return &found->second;
}

SyncEntry& ReplicationState::entryAt(const Locator& locator) {
    const auto found = entries_.find(locator);
    if (found == entries_.end()) throw noInformationAt(locator);
    return found->second;
}

SeqNumBlock& ReplicationState::seqNumBlockOf(const SyncEntry& entry) {
    const auto found = seqNumBlocks_.find(entry.seqNumBlockSuid());
    if (found == seqNumBlocks_.end()) {
        throw GeneralError(Message::NoSequenceBlock) << Tag("suid") << entry.seqNumBlockSuid();
    }
    return found->second;
}

UnidBlock& ReplicationState::unidBlock(std::uint32_t suid) {
    const auto key = static_cast<std::int32_t>(suid);
    const auto found = unidBlocks_.find(key);
    if (found == unidBlocks_.end()) throw GeneralError(Message::NoUnidBlock) << Tag("suid") << key;
    return found->second;
}

const UnidBlock& ReplicationState::blockAt(const Locator& locator) const {
    const auto key = static_cast<std::int32_t>(locator.unidBlockSuid);
    const auto found = unidBlocks_.find(key);
    if (found == unidBlocks_.end()) throw GeneralError(Message::UnidBlockNotFound) << Tag("suid") << key;
    return found->second;
}

const Unid& ReplicationState::unidAt(const Locator& locator) const {
    return blockAt(locator).unidAt(locator.unidIndex);
}

const Dbid& ReplicationState::dbidAt(const Locator& locator) const { return blockAt(locator).dbid(); }

ItemId ReplicationState::itemIdOfUid(std::int32_t uid) const {
    const auto found = locatorsByUid_.find(uid);
    if (found == locatorsByUid_.end()) throw GeneralError(Message::NoUnidBlockLocator) << Tag("uid") << uid;
    return ItemId(dbidAt(found->second), unidAt(found->second));
}

void ReplicationState::listUids(std::vector<std::int32_t>& out) const {
    for (const auto& [locator, entry] : entries_) {
        for (const SyncRecord& record : entry.records()) out.push_back(record.uid);
    }
}

void ReplicationState::listDeletedItems(std::vector<ItemId>& out) const {
    out.assign(deletedItems_.begin(), deletedItems_.end());
}

void ReplicationState::collectReplicationInfo(std::optional<std::uint8_t> category,
                                              std::vector<ReplicationInfo>& out) const {
    out.reserve(out.size() + entries_.size());
    for (const auto& [locator, entry] : entries_) {
        if (!entry.matches(category)) continue;
        const ItemId itemId(dbidAt(locator), unidAt(locator));
        out.push_back(ReplicationInfo{ItemVersion(itemId, entry.sequenceNumber()), entry.userData(),
                                      entry.category(), entry.isModified(), entry.hasAttributesChanged()});
    }
}

// Keeps a block in use while it has room. Deliberate: a current block of another database stays current, and
// takes the item when no block of the right one has room and displaces it.
std::int32_t ReplicationState::unidBlockFor(const Dbid& dbid) {
    if (currentUnidBlock_ != unidBlocks_.end() && currentUnidBlock_->second.dbid() == dbid) {
        if (!currentUnidBlock_->second.isFull()) return currentUnidBlock_->first;
        currentUnidBlock_ = unidBlocks_.end();
    }
    for (auto candidate = unidBlocks_.begin(); candidate != unidBlocks_.end(); ++candidate) {
        const UnidBlock& block = candidate->second;
        if (block.dbid() != dbid || block.isFull()) continue;
        if (currentUnidBlock_ == unidBlocks_.end() || isBetter(block, currentUnidBlock_->second)) {
            currentUnidBlock_ = candidate;
        }
    }
    if (currentUnidBlock_ == unidBlocks_.end()) {
        currentUnidBlock_ = unidBlocks_.emplace(newKey(unidBlocks_), UnidBlock(dbid)).first;
    }
    return currentUnidBlock_->first;
}

std::int32_t ReplicationState::seqNumBlockFor(std::int32_t unidBlockSuid, std::uint32_t index) {
    if (currentSeqNumBlock_ == seqNumBlocks_.end() || currentSeqNumBlock_->second.isFull()
        || currentSeqNumBlock_->second.unidBlockSuid() != unidBlockSuid) {
        currentSeqNumBlock_ = bestSeqNumBlock(unidBlockSuid);
    }
    if (currentSeqNumBlock_ == seqNumBlocks_.end()) {
        currentSeqNumBlock_ = addSeqNumBlock(newKey(seqNumBlocks_), unidBlockSuid);
    }
    currentSeqNumBlock_->second.addIndex(index);
    return currentSeqNumBlock_->first;
}

// Looks at the few blocks of the UNID block alone: with 50,000 items there are thousands of others.
ReplicationState::Blocks<SeqNumBlock>::iterator
ReplicationState::bestSeqNumBlock(std::int32_t unidBlockSuid) {
    auto best = seqNumBlocks_.end();
    auto key = seqNumBlockKeys_.lower_bound({unidBlockSuid, std::numeric_limits<std::int32_t>::min()});
    for (; key != seqNumBlockKeys_.end() && key->first == unidBlockSuid; ++key) {
        const auto candidate = seqNumBlocks_.find(key->second);
        if (candidate->second.isFull()) continue;
        if (best == seqNumBlocks_.end() || isBetter(candidate->second, best->second)) best = candidate;
    }
    return best;
}

// The block of this key, new or not.
ReplicationState::Blocks<SeqNumBlock>::iterator ReplicationState::addSeqNumBlock(std::int32_t key,
                                                                                 std::int32_t unidBlockSuid) {
    const auto [block, isNew] = seqNumBlocks_.try_emplace(key, unidBlockSuid);
    if (isNew) seqNumBlockKeys_.emplace(unidBlockSuid, key);
    return block;
}

void ReplicationState::addEntry(const ItemVersion& version, std::uint32_t category,
                                const std::vector<SyncRecord>& records) {
    const ItemId& itemId = version.id();
    const std::int32_t unidBlockSuid = unidBlockFor(itemId.dbid());
    const std::uint32_t index = unidBlocks_.at(unidBlockSuid).addUnid(itemId.unid());
    const std::int32_t seqNumBlockSuid = seqNumBlockFor(unidBlockSuid, index);
    const Locator locator{static_cast<std::uint32_t>(unidBlockSuid), index};
    const auto stored = entries_.insert_or_assign(
        locator, SyncEntry(version.sequenceNumber(), category, 0, records, seqNumBlockSuid, index));
    for (const SyncRecord& record : records) locatorsByUid_[record.uid] = locator;
    locatorsByItem_[itemId] = locator;
    removeStubsOf(stored.first->second);
}

void ReplicationState::removeEntry(const ItemId& itemId) {
    const SyncEntry& gone = entry(itemId);
    for (const SyncRecord& record : gone.records()) {
        removeDeletionStub(record.uid);
        removeModificationStub(record.uid);
        if (locatorsByUid_.erase(record.uid) == 0) {
            throw GeneralError(Message::NoUnidBlockLocator) << Tag("uid") << record.uid;
        }
    }
    seqNumBlockOf(gone).removeIndex(gone.unidIndex());
    const auto found = locatorsByItem_.find(itemId);
    const Locator locator = found->second; // there, since entry() went by it
    locatorsByItem_.erase(found);
    entries_.erase(locator);
}

void ReplicationState::removeDeletionStub(std::int32_t uid) {
    const auto stub = deletionStubs_.find(uid);
    if (stub == deletionStubs_.end()) return;
    log_ << "#t Marking deletion stub for removal: UID=$uid" << Tag("uid")
         << toHex(static_cast<std::uint32_t>(uid)) << '\n';
    stub->second.removed = true;
}

bool ReplicationState::removeModificationStub(std::int32_t uid) {
    const auto stub = modificationStubs_.find(uid);
    if (stub == modificationStubs_.end()) return false;
    log_ << "#t Marking modification stub for removal: UID=$uid" << Tag("uid")
         << toHex(static_cast<std::uint32_t>(uid)) << '\n';
    stub->second.removed = true;
    return stub->second.archive;
}

// A record that is exchanged once more gives up its stubs, and the copy of an archived one goes when its item
// comes back. Deliberate: records behind the first archived one keep their stubs.
void ReplicationState::removeStubsOf(const SyncEntry& entry) {
    for (const SyncRecord& record : entry.records()) {
        removeDeletionStub(record.uid);
        if (!removeModificationStub(record.uid)) continue;
        const auto copy = archivedCopies_.find(record.uid);
        if (copy != archivedCopies_.end()) copy->second.content.reset();
        return;
    }
}

void ReplicationState::updateEntry(const ItemId& itemId, std::uint32_t sequenceNumber,
                                   std::optional<std::uint32_t> userData,
                                   std::optional<std::uint32_t> category, const std::optional<Unid>& newUnid,
                                   std::optional<bool> sendWhole) {
    SyncEntry& updated = entry(itemId);
    if (newUnid) {
        const std::vector<SyncRecord> records = updated.records();
        removeEntry(itemId);
        addEntry(ItemVersion(ItemId(itemId.dbid(), *newUnid), sequenceNumber), category.value(), records);
        return;
    }
    updated.setSequenceNumber(sequenceNumber);
    if (userData) updated.setUserData(*userData);
    if (category) updated.setCategory(*category);
    seqNumBlockOf(updated).dirty = true;
    removeStubsOf(updated);
    if (sendWhole) updated.setSendWhole(*sendWhole);
}

void ReplicationState::reset() {
    std::vector<ItemId> items;
    for (const auto& [suid, block] : seqNumBlocks_) {
        for (const std::uint32_t index : block.indexes()) {
            const Locator locator{static_cast<std::uint32_t>(block.unidBlockSuid()), index};
            items.emplace_back(dbidAt(locator), unidAt(locator));
        }
    }
    for (const ItemId& item : items) updateEntry(item, 0);
}

void ReplicationState::addDeletionStub(std::int32_t uid) {
    markModificationStubRemoved(uid);
    deletionStubs_.try_emplace(uid);
}

void ReplicationState::addModificationStub(std::int32_t uid, bool archived) {
    modificationStubs_.try_emplace(uid, Stub{0, false, archived});
}

void ReplicationState::markModificationStubRemoved(std::int32_t uid) {
    const auto stub = modificationStubs_.find(uid);
    if (stub != modificationStubs_.end()) stub->second.removed = true;
}

void ReplicationState::resolveDeletions() {
    for (auto& [uid, stub] : deletionStubs_) {
        SyncEntry* const entry = findEntryByUid(uid);
        if (entry == nullptr) {
            log_ << "#t Delete: UID=$uid - sync entry missing!!" << Tag("uid") << uid << '\n';
            stub.removed = true;
            continue;
        }
        log_ << "#t Delete: UID=$uid" << Tag("uid") << uid << '\n';
        if (entry->markRecordDeleted(uid)) {
            deletedItems_.insert(itemIdOfUid(uid));
        } else {
            entry->setModified();
        }
    }
}

void ReplicationState::setArchivedCopy(std::int32_t uid, std::uint32_t suid,
                                       const CountedPtr<PalmRecordBuffer>& content) {
    archivedCopies_[uid] = ArchivedCopy{suid, content};
}

} // namespace tsr
