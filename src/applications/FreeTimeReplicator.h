#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "applications/FreeTimeApplicationTraits.h"
#include "applications/FreeTimeUser.h"
#include "conduit/Replicator.h"

namespace tsr {

// Feeds the handheld's free-time application: for each person that the user has listed there it asks the
// server for free time and lays it into weekly bitmaps. A CRC record makes the next session touch only the
// weeks that changed. The records of the database are told apart by category (docs/free-time.md).
//
// All of it is `preReplicate`; no records are replicated.
class FreeTimeReplicator : public Replicator {
public:
    explicit FreeTimeReplicator(const CountedPtr<PalmProxy>& palm);

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
    std::string sendReplicationInfo(const std::string& className, const StringRun& entries) override;
    std::vector<std::string> classNames() override { return {}; }
    CountedPtr<NotesApplicationRecord> makeNotesRecord(const NotesItem& item) override;
    Record makePalmRecord(PalmRecordBuffer& buffer, bool archived) override;
    void preReplicate() override;

private:
    using Users = std::map<std::uint32_t, FreeTimeUser>; // by the record id of the person's record

    void readUsers(PalmRecordBuffer& buffer);
    void readSearchConfiguration(PalmRecordBuffer& buffer);
    void readCrcRecord(PalmRecordBuffer& buffer);
    void parseCrcRecord(PalmRecordBuffer& buffer);
    void deleteAllWeeks(PalmRecordBuffer& buffer);
    void updateUser(std::uint32_t userId, FreeTimeUser& user);
    void requestFreeTime(FreeTimeUser& user);
    void writeWeeks(std::uint32_t userId, FreeTimeUser& user);
    void writeWeek(std::uint32_t userId, FreeTimeWeek& week);
    void writeCrcRecord();

    FreeTimeApplicationTraits traits_;
    Users users_;
    std::uint32_t searchLength_ = 0; // as the handheld has it, for the server
};

} // namespace tsr
