#pragma once

#include <string>
#include <vector>

#include "conduit/Replicator.h"
#include "server/ReplicatorImpl.h"
#include "server/commands.h"

namespace tsr {

// An application with one class of items, whose requests are the usual ones under codes of its own. The
// conversions, and how an item is sent, are left to it.
class ItemReplicator : public Replicator, public ReplicatorImpl {
public:
    // `traits` and `commands` live as long as the replicator.
    ItemReplicator(const ApplicationTraits& traits, const ApplicationCommands& commands,
                   std::string className, const CountedPtr<PalmProxy>& palm)
        : Replicator(traits, palm), commands_(commands), className_(std::move(className)) {}

protected:
    void fetchAnomalies(const std::string& token, std::vector<ItemId>& out) override;
    void fetchDeletedInNotes(const std::string& token, std::vector<ItemId>& out) override;
    void fetchWantedItems(const std::string& token, std::vector<ItemId>& out) override;
    void receiveItem(const std::string& className, const std::string& token, const std::string& handle,
                     NotesItem& item, ItemVersion& version) override;
    void listItemsToReceive(const std::string& token, std::vector<std::string>& handles) override;
    ItemVersion sendAnomalyItem(const std::string& token, const ItemId& itemId,
                                const NotesApplicationRecord& record, std::string& newUnid) override;
    void sendDeletionList(const std::vector<ItemId>& items, std::vector<ItemId>& deleted) override;
    std::string sendReplicationInfo(const std::string& className,
                                    const StringRun& entries) override; // without a window
    std::vector<std::string> classNames() override { return {className_}; }

private:
    const ApplicationCommands& commands_;
    std::string className_;
};

} // namespace tsr
