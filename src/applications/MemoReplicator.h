#pragma once

#include <string>
#include <vector>

#include "applications/ApplicationCategories.h"
#include "applications/MemoApplicationTraits.h"
#include "conduit/Replicator.h"
#include "server/ReplicatorImpl.h"

namespace tsr {

// Memo Pad and the Notes journal: an entry is one memo.
class MemoReplicator : public Replicator, public ReplicatorImpl {
public:
    explicit MemoReplicator(const CountedPtr<PalmProxy>& palm);

protected:
    PalmRecordGroup convertToPalm(const NotesApplicationRecord& record, bool& resendWanted) override;
    CountedPtr<NotesApplicationRecord> convertToNotes(const PalmRecordGroup& group, bool wasModified,
                                                      int reserved) override;
    void fetchAnomalies(const std::string& token, std::vector<ItemId>& out) override;
    void fetchDeletedInNotes(const std::string& token, std::vector<ItemId>& out) override;
    void fetchWantedItems(const std::string& token, std::vector<ItemId>& out) override;
    void receiveItem(const std::string& className, const std::string& token, const std::string& handle,
                     NotesItem& item, ItemVersion& version) override;
    void listItemsToReceive(const std::string& token, std::vector<std::string>& handles) override;
    ItemVersion sendAnomalyItem(const std::string& token, const ItemId& itemId,
                                const NotesApplicationRecord& record, std::string& newUnid) override;
    ItemVersion sendItem(const std::string& className, const std::string& token, const ItemId& itemId,
                         const NotesApplicationRecord& record) override;
    void sendDeletionList(const std::vector<ItemId>& items, std::vector<ItemId>& deleted) override;
    std::string sendReplicationInfo(const std::string& className,
                                    const std::vector<std::string>& entries) override;
    CountedPtr<PalmRecordBuffer> appInfoToWrite() override { return categories_.appInfoToWrite(); }
    std::vector<std::string> classNames() override { return {"Memo items"}; }
    CountedPtr<NotesApplicationRecord> makeNotesRecord(const NotesItem& item) override;
    Record makePalmRecord(PalmRecordBuffer& buffer, bool archived) override;

private:
    MemoApplicationTraits traits_;
    ApplicationCategories categories_;
};

} // namespace tsr
