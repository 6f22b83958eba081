#include "applications/ItemReplicator.h"

namespace tsr {

void ItemReplicator::fetchAnomalies(const std::string& token, std::vector<ItemId>& out) {
    fetchItemIds(server(), token, commands_.countAnomalies, commands_.fetchAnomalies, out);
}

void ItemReplicator::fetchDeletedInNotes(const std::string& token, std::vector<ItemId>& out) {
    fetchItemIds(server(), token, commands_.countDeleted, commands_.fetchDeleted, out);
}

void ItemReplicator::fetchWantedItems(const std::string& token, std::vector<ItemId>& out) {
    fetchItemIds(server(), token, commands_.countWanted, commands_.fetchWanted, out);
}

void ItemReplicator::receiveItem(const std::string& className, const std::string& token,
                                 const std::string& handle, NotesItem& item, ItemVersion& version) {
    version = ReplicatorImpl::receiveItem(server(), token, className, handle, commands_.receiveItem, item);
}

void ItemReplicator::listItemsToReceive(const std::string& token, std::vector<std::string>& handles) {
    listItemIndices(server(), token, commands_.countToReceive, handles);
}

ItemVersion ItemReplicator::sendAnomalyItem(const std::string& token, const ItemId& itemId,
                                            const NotesApplicationRecord& record, std::string& newUnid) {
    return ReplicatorImpl::sendAnomalyItem(server(), token, commands_.sendAnomaly, itemId, itemOf(record),
                                           false, newUnid);
}

void ItemReplicator::sendDeletionList(const std::vector<ItemId>& items, std::vector<ItemId>& deleted) {
    ReplicatorImpl::sendDeletions(server(), commands_.sendDeletions, false, items, deleted);
}

std::string ItemReplicator::sendReplicationInfo(const std::string&, const StringRun& entries) {
    return ReplicatorImpl::sendReplicationInfo(server(), account(), commands_.sendReplicationInfo,
                                               std::string(), std::string(), entries);
}

} // namespace tsr
