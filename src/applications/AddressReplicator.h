#pragma once

#include <string>
#include <vector>

#include "applications/AddressApplicationTraits.h"
#include "applications/ApplicationCategories.h"
#include "applications/ItemReplicator.h"

namespace tsr {

// Address and the contacts of Notes: a contact is one record. The server's answers to its anomalies and
// deletions have one string more than those of the others.
class AddressReplicator : public ItemReplicator {
public:
    explicit AddressReplicator(const CountedPtr<PalmProxy>& palm);

protected:
    PalmRecordGroup convertToPalm(const NotesApplicationRecord& record, bool& resendWanted) override;
    CountedPtr<NotesApplicationRecord> convertToNotes(const PalmRecordGroup& group, bool wasModified,
                                                      int reserved) override;
    ItemVersion sendAnomalyItem(const std::string& token, const ItemId& itemId,
                                const NotesApplicationRecord& record, std::string& newUnid) override;
    ItemVersion sendItem(const std::string& className, const std::string& token, const ItemId& itemId,
                         const NotesApplicationRecord& record) override;
    void sendDeletionList(const std::vector<ItemId>& items, std::vector<ItemId>& deleted) override;
    CountedPtr<PalmRecordBuffer> appInfoToWrite() override { return categories_.appInfoToWrite(); }
    CountedPtr<NotesApplicationRecord> makeNotesRecord(const NotesItem& item) override;
    Record makePalmRecord(PalmRecordBuffer& buffer, bool archived) override;
    bool sendsWantedInFull() const override { return true; }

private:
    AddressApplicationTraits traits_;
    ApplicationCategories categories_;
};

} // namespace tsr
