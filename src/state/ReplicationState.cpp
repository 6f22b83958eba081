#include "state/ReplicationState.h"

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

// Makes `current` the best block of those that `fits` and that aren't full: one that must be rewritten anyway
// before a clean one, then the one that holds least. What is current stays unless another is better; of
// equals the earlier wins.
template <typename Block, typename Fits, typename Size>
void chooseBlock(std::map<std::int32_t, Block>& blocks,
                 typename std::map<std::int32_t, Block>::iterator& current, Fits fits, Size size) {
    for (auto candidate = blocks.begin(); candidate != blocks.end(); ++candidate) {
        const Block& block = candidate->second;
        if (!fits(block) || block.isFull()) continue;
        if (current == blocks.end() || (block.dirty && !current->second.dirty)
            || size(block) < size(current->second)) {
            current = candidate;
        }
    }
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
    chooseBlock(
        unidBlocks_, currentUnidBlock_, [&dbid](const UnidBlock& block) { return block.dbid() == dbid; },
        [](const UnidBlock& block) { return block.unids().size(); });
    if (currentUnidBlock_ == unidBlocks_.end()) {
        currentUnidBlock_ = unidBlocks_.emplace(newKey(unidBlocks_), UnidBlock(dbid)).first;
    }
    return currentUnidBlock_->first;
}

std::int32_t ReplicationState::seqNumBlockFor(std::int32_t unidBlockSuid, std::uint32_t index) {
    const auto fits = [unidBlockSuid](const SeqNumBlock& block) {
        return block.unidBlockSuid() == unidBlockSuid;
    };
    if (currentSeqNumBlock_ != seqNumBlocks_.end()
        && (!fits(currentSeqNumBlock_->second) || currentSeqNumBlock_->second.isFull())) {
        currentSeqNumBlock_ = seqNumBlocks_.end();
    }
    if (currentSeqNumBlock_ == seqNumBlocks_.end()) {
        chooseBlock(seqNumBlocks_, currentSeqNumBlock_, fits,
                    [](const SeqNumBlock& block) { return block.indexes().size(); });
    }
    if (currentSeqNumBlock_ == seqNumBlocks_.end()) {
        currentSeqNumBlock_ = seqNumBlocks_.emplace(newKey(seqNumBlocks_), SeqNumBlock(unidBlockSuid)).first;
    }
    currentSeqNumBlock_->second.addIndex(index);
    return currentSeqNumBlock_->first;
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
