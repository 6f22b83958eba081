#pragma once

#include <cstdint>
#include <map>
#include <ostream>
#include <string>
#include <vector>

#include "conduit/ApplicationTraits.h"
#include "device/PalmConfiguration.h"
#include "device/PalmProxy.h"
#include "device/ReplicationType.h"
#include "foundation/CountedPtr.h"
#include "foundation/DebugLogStream.h"
#include "foundation/Error.h"
#include "foundation/ItemId.h"
#include "foundation/ItemVersion.h"
#include "foundation/NullLogStream.h"
#include "foundation/TimeZone.h"
#include "records/NotesApplicationRecord.h"
#include "records/PalmRecordGroup.h"
#include "server/NotesItem.h"
#include "server/ServerConnection.h"
#include "state/ReplicationState.h"

namespace tsr {

// The replication of one handheld application: `run` is one session, a fixed sequence of phases that is the
// same for all applications. What differs lies behind the virtual operations.
//
// A failure of one item is written to both logs and the loop goes on. A failure of a phase is wrapped in the
// phase's message and ends the session; the sync database is then as it was, as it is written near the end
// only.
class Replicator {
public:
    using Record = CountedPtr<PalmApplicationRecord>;

    // `traits` lives as long as the replicator.
    Replicator(const ApplicationTraits& traits, const CountedPtr<PalmProxy>& palm);
    Replicator(const Replicator&) = delete;
    Replicator& operator=(const Replicator&) = delete;
    virtual ~Replicator() = default;

    // Runs the session: `requestedType` is Normal or Slow. Returns 0 whatever happens: failures are visible
    // in the logs.
    std::int32_t run(ReplicationType requestedType);

protected:
    // Between the two forms of a record. `resendWanted` comes back true for one that lost something on its
    // way to the device. `wasModified` tells whether the group's primary record was changed; the last
    // argument is 1 for mail that is sent off, and 0 otherwise.
    virtual PalmRecordGroup convertToPalm(const NotesApplicationRecord& record, bool& resendWanted) = 0;
    virtual CountedPtr<NotesApplicationRecord> convertToNotes(const PalmRecordGroup& group, bool wasModified,
                                                              int outgoing) = 0;

    // The requests of the application. `token` is the replication token of the class in progress.
    virtual void fetchAnomalies(const std::string& token, std::vector<ItemId>& out) = 0;
    virtual void fetchDeletedInNotes(const std::string& token, std::vector<ItemId>& out) = 0;
    virtual void fetchWantedItems(const std::string& token, std::vector<ItemId>& out) = 0;
    virtual void receiveItem(const std::string& className, const std::string& token,
                             const std::string& handle, NotesItem& item, ItemVersion& version) = 0;
    virtual void listItemsToReceive(const std::string& token, std::vector<std::string>& handles) = 0;
    virtual ItemVersion sendAnomalyItem(const std::string& token, const ItemId& itemId,
                                        const NotesApplicationRecord& record, std::string& newUnid) = 0;
    virtual ItemVersion sendItem(const std::string& className, const std::string& token, const ItemId& itemId,
                                 const NotesApplicationRecord& record) = 0;
    virtual void sendDeletionList(const std::vector<ItemId>& items, std::vector<ItemId>& deleted) = 0;
    virtual std::string sendReplicationInfo(const std::string& className, const StringRun& entries) = 0;

    virtual bool categoryOfClass(const std::string& className, std::uint8_t& category); // false: it has none
    virtual CountedPtr<PalmRecordBuffer> appInfoToWrite(); // null: nothing to write
    virtual std::vector<std::string> classNames() = 0;     // empty: the application replicates no records
    virtual CountedPtr<NotesApplicationRecord> makeNotesRecord(const NotesItem& item) = 0;
    virtual Record makePalmRecord(PalmRecordBuffer& buffer, bool archived) = 0;
    virtual void collectReplicationEntries(const std::string& className, StringRun& out);
    virtual void preReplicate() {}
    virtual void readApplicationPreferences() {}
    virtual bool isConfigured() { return true; }
    virtual bool sendsWantedInFull() const {
        return false;
    } // also what wasn't changed, when the server asks for it

    // Writes an error and all its causes to both logs, two asterisks for each level.
    void logErrorChain(const Error& error);

    // Turns a record that was read into a typed one. One that can't be parsed is told in the logs, and a
    // PalmDummyRecord takes its place.
    Record readRecord(PalmRecordBuffer& buffer, std::uint32_t uid, bool archived);

    // What the log tells of the entries that go to the server.
    void logReplicationEntries(std::size_t modified, std::size_t all);

    bool hasState() const { return static_cast<bool>(state_); } // none where no class replicates
    ReplicationState& state() { return *state_; }
    PalmProxy& palm() { return *palm_; }
    const CountedPtr<PalmProxy>& sharedPalm() { return palm_; }
    ServerConnection& server() { return *server_; }
    const PalmConfiguration& config() const { return *config_; }
    ServerAccount account() const; // what the server needs of the configuration to know the user by
    NotesItem itemOf(const NotesApplicationRecord& record) const; // with its properties alone
    const TimeZone& timeZone() { return timeZone_; }
    std::ostream& log() { return *log_; }

private:
    // The session: Replicator.cpp.
    void prepare();
    void readConfiguration(ReplicationType requestedType);
    bool endsWithoutConnection();
    void connect();
    void prepareData(const std::vector<std::string>& classes);
    void fetchUserName();
    void exchange(const std::vector<std::string>& classes);
    void replicateClass(const std::string& className);
    void writeBack();
    void resetFlags();
    void logSessionErrors();
    void finish();
    void abort(const Error& error);
    ReplicationType storedType() const { return static_cast<ReplicationType>(config_->replicationType()); }

    // Finding what changed on the device: ReplicatorGather.cpp.
    void gatherModified();
    void readFlaggedRecords(std::vector<std::uint32_t>& deletedUids);
    void readAllRecords(std::vector<std::uint32_t>& deletedUids);
    void gatherRecord(PalmRecordBuffer& buffer, std::vector<std::uint32_t>& deletedUids);
    void gatherOrdinaryRecord(PalmRecordBuffer& buffer);
    void widenToItem(std::uint32_t uid);

    // Sending: ReplicatorSend.cpp.
    void sendDeletions();
    void sendNewRecords(const std::string& className);
    void sendNewRecord(const std::string& className, std::uint32_t uid, Record& record);
    bool readNewRecord(std::uint32_t uid, Record& record);
    std::string sendReplicationEntries(const std::string& className);
    void sendItems(const std::string& className, const std::string& token, bool anomalies);
    void sendOneItem(const std::string& className, const std::string& token, const ItemId& itemId,
                     bool anomalies, SyncEntry& info);
    PalmRecordGroup groupToSend(const SyncEntry& info, std::int32_t primaryUid, bool wasModified);
    Record modifiedRecord(std::uint32_t uid);
    void noteSent(SyncEntry& info, std::int32_t primaryUid);
    Record readApplicationRecord(std::uint32_t uid);
    void copyFromSyncDb();

    // Receiving: ReplicatorReceive.cpp.
    void receiveItems(const std::string& className, const std::string& token);
    void receiveOneItem(const std::string& className, const std::string& token, const std::string& handle);
    void storeItem(const ItemVersion& version, const PalmRecordGroup& group, bool resendWanted);
    void storeInEntry(SyncEntry& info, const PalmRecordGroup& group);
    void replaceRecord(SyncEntry& info, std::uint32_t tag, const PalmApplicationRecord& record);
    void storeNewItem(const ItemVersion& version, const PalmRecordGroup& group);
    void receiveDeletions(const std::string& token);

    ReplicationType replicationType_ = ReplicationType::Normal; // of this session
    const ApplicationTraits& traits_;
    CountedPtr<ServerConnection> server_; // not connected at first
    CountedPtr<PalmProxy> palm_;
    CountedPtr<ReplicationState> state_;   // null until it is read
    CountedPtr<PalmConfiguration> config_; // null until it is read
    TimeZone timeZone_;                    // as configured on the server
    DebugLogStream debugLog_;
    NullLogStream nullLog_;
    std::ostream* log_; // one of the two
    std::size_t fixupLimit_;

    // The working set of the session, by UID. Null says: changed, but not read yet, or not to be read.
    std::map<std::uint32_t, Record> modified_;
};

} // namespace tsr
