#pragma once

#include <string>
#include <vector>

#include "applications/MailApplicationTraits.h"
#include "applications/MailPreferences.h"
#include "conduit/Replicator.h"
#include "records/NotesMailRecord.h"
#include "records/PalmMailRecord.h"
#include "server/ReplicatorImpl.h"

namespace tsr {

// Mail and the user's mail database in Notes. Inbox and Drafts replicate, as far as the user's filter lets
// them. Before that, the Outbox is sent off and the Deleted folder worked off.
class MailReplicator : public Replicator, public ReplicatorImpl {
public:
    explicit MailReplicator(const CountedPtr<PalmProxy>& palm) : Replicator(traits_, palm) {}

protected:
    PalmRecordGroup convertToPalm(const NotesApplicationRecord& record, bool& resendWanted) override;
    CountedPtr<NotesApplicationRecord> convertToNotes(const PalmRecordGroup& group, bool wasModified,
                                                      int outgoing) override;
    void fetchAnomalies(const std::string&, std::vector<ItemId>&) override {} // mail has none
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
    std::string sendReplicationInfo(const std::string& className, const StringRun& entries) override;
    bool categoryOfClass(const std::string& className, std::uint8_t& category) override;
    std::vector<std::string> classNames() override;
    CountedPtr<NotesApplicationRecord> makeNotesRecord(const NotesItem& item) override;
    Record makePalmRecord(PalmRecordBuffer& buffer, bool archived) override;
    // Four strings each: Unid text, sequence number, that number plus one for a message that was changed and
    // "0" for one that was read or marked as unread, and "1" for one that is unread.
    void collectReplicationEntries(const std::string& className, StringRun& out) override;
    void preReplicate() override;
    void readApplicationPreferences() override;

private:
    template <typename Visit>
    void walkFolder(std::uint8_t folder, Visit visit);
    void sendOutbox();
    void sendFromOutbox(std::uint32_t uid, const Record& record);
    void sendOutgoing(const NotesMailRecord& mail);
    void forget(std::uint32_t uid);
    void emptyDeletedFolder();
    std::string replicationOptions() const;
    void fetchSignature();
    std::string wantedSignature(const PalmMailRecord& palm) const; // empty for mail without one

    MailApplicationTraits traits_;
    std::string mailDatabase_; // Dbid text
    MailPreferences preferences_;
    std::string signature_;
    bool signatureLoaded_ = false;
};

} // namespace tsr
