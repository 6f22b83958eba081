#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>

#include "handheld/Handheld.h"
#include "handheld/SyncCalls.h"
#include "platform/syncManager.h"

namespace tsr {

// The Sync Manager in front of one handheld: the operations of the binary interface, by the names that they
// have there without "Sync". One object serves one HotSync; what it has open is closed with it.
//
// All reads show records that are deleted or archived, but a walk by category leaves them out. Secret records
// are shown in every open mode. Both walks of a database share one position, which readRecordById and
// readRecordByIndex do not move. It is an index: who deletes a record behind him in a walk skips one before
// him, as on the device.
class SyncManager {
public:
    static constexpr std::uint8_t readMode = 0x80;
    static constexpr std::uint8_t writeMode = 0x40;
    static constexpr std::uint8_t exclusiveMode = 0x20;

    explicit SyncManager(Handheld& handheld) : handheld_(handheld) {}

    Handheld& handheld() { return handheld_; }
    SyncCalls& calls() { return calls_; }
    std::size_t openDatabases() const { return open_.size(); }

    // Called whenever a database has been closed or deleted, or written by the remote module. An answer of
    // false makes the call fail with syncResult::systemError.
    void setSave(std::function<bool()> save) { save_ = std::move(save); }
    void closeAll(); // without a call, as the end of a HotSync does it

    std::int32_t findDbByTypeCreator(const DatabaseSearchBlock* search, DatabaseInfoBlock* found);
    std::int32_t openDb(const char* name, std::int32_t card, std::uint8_t* handle, std::uint8_t mode);
    std::int32_t createDb(DatabaseCreateBlock* block);
    std::int32_t closeDb(std::uint8_t handle, std::uint8_t option);
    std::int32_t deleteDb(const char* name, std::int32_t card);

    std::int32_t readRecordById(RawRecordInfo* record);
    std::int32_t readRecordByIndex(RawRecordInfo* record);
    std::int32_t readNextRecInCategory(RawRecordInfo* record);
    std::int32_t readNextModifiedRec(RawRecordInfo* record);
    std::int32_t writeRec(RawRecordInfo* record);
    std::int32_t deleteRec(const RawRecordInfo* record);

    std::int32_t resetRecordIndex(std::uint8_t handle);
    std::int32_t purgeDeletedRecs(std::uint8_t handle);
    std::int32_t resetSyncFlags(std::uint8_t handle);
    std::int32_t getDbRecordCount(std::uint8_t handle, std::uint16_t* count);

    std::int32_t readDbAppInfoBlock(std::uint8_t handle, AppInfoBlockInfo* block);
    std::int32_t writeDbAppInfoBlock(std::uint8_t handle, const AppInfoBlockInfo* block);

    std::int32_t callRemoteModule(RemoteModuleBlock* block);
    std::int32_t readAppPreference(AppPreferenceBlock* block);
    std::int32_t readSysDateTime(std::uint32_t* time);
    std::uint16_t getHandheldOsVersion(std::uint16_t* minor); // the major number, 0 for a failed call
    std::int32_t getApiVersion(std::uint32_t* major, std::uint32_t* minor);
    std::int32_t yieldCycles(std::uint16_t milliseconds);

private:
    struct OpenDatabase {
        HandheldDatabase* database;
        std::uint8_t mode;
        std::size_t position = 0; // the index at which a walk goes on
    };

    std::int32_t findNext(const DatabaseSearchBlock& search, DatabaseInfoBlock& found);
    std::int32_t open(HandheldDatabase& database, std::uint8_t mode, std::uint8_t& handle);
    std::int32_t create(DatabaseCreateBlock& block);
    std::int32_t write(HandheldDatabase& database, RawRecordInfo& record);
    std::int32_t readPreference(AppPreferenceBlock& block) const;
    bool isOpen(const HandheldDatabase& database) const;
    std::int32_t save();

    // Calls `work` with the open database of `handle`, or answers why there is none.
    template <typename Work>
    std::int32_t withOpen(std::uint8_t handle, Work work);
    template <typename Work>
    std::int32_t withWritable(std::uint8_t handle, Work work);
    template <typename Wanted>
    std::int32_t readNext(RawRecordInfo& record, Wanted wanted);

    Handheld& handheld_;
    SyncCalls calls_;
    std::map<std::uint8_t, OpenDatabase> open_;
    std::string searchPosition_; // the name of the database that was found last
    std::function<bool()> save_;
};

} // namespace tsr
