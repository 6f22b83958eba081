#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "device/PalmConfiguration.h"
#include "device/PalmDatabase.h"
#include "device/PalmRecordBuffer.h"
#include "foundation/CountedPtr.h"
#include "foundation/HotSyncActivity.h"
#include "resources/Message.h"

namespace tsr {

// Takes a text that ends with a NUL and shows it to the user.
using ProgressCallback = void(TSR_PLATFORM_CALL*)(const char* text);

// The replicator's single way to the handheld. It knows the application's two databases and keeps at most one
// database open, switching on demand: a caller finishes a walk through one before it touches the other, or
// loses its place.
class PalmProxy {
public:
    explicit PalmProxy(ProgressCallback progressCallback); // opens the HotSync log
    PalmProxy(const PalmProxy&) = delete;
    PalmProxy& operator=(const PalmProxy&) = delete;
    ~PalmProxy(); // closes the database and the log

    // Comes before any database operation. No sync database is a creator or type of 0, or an empty name.
    void setApplication(const std::string& displayName, std::uint32_t appDbCreator,
                        const std::string& appDbName, std::uint32_t appDbType, std::uint32_t syncDbCreator,
                        const std::string& syncDbName, std::uint32_t syncDbType);

    // The application database, opened or created when it isn't open.
    void readRecordById(PalmRecordBuffer& buffer, std::uint32_t id);
    bool readRecordByIndex(PalmRecordBuffer& buffer, std::uint16_t index); // false past the end
    bool readFirstModified(PalmRecordBuffer& buffer);
    bool readNextModified(PalmRecordBuffer& buffer);
    bool readFirstInCategory(PalmRecordBuffer& buffer, std::int16_t category);
    bool readNextInCategory(PalmRecordBuffer& buffer);
    std::uint32_t writeRecord(std::uint32_t recordId, PalmRecordBuffer& buffer); // id 0 is new; gives the UID
    void deleteRecord(std::uint32_t uid);
    void readAppInfoBlock(PalmRecordBuffer& buffer);
    void writeAppInfoBlock(const PalmRecordBuffer& buffer);
    void purgeAndResetFlags();
    void clearApplication(); // deletes the database, which may be missing, and creates it anew

    // The sync database, likewise. Raise NoSyncDatabase where the application has none.
    void readSyncRecordById(PalmRecordBuffer& buffer, std::uint32_t id);
    bool readFirstInSyncCategory(PalmRecordBuffer& buffer, std::int16_t category);
    bool readNextInSyncCategory(PalmRecordBuffer& buffer);
    std::uint32_t writeSyncRecord(std::uint32_t recordId, PalmRecordBuffer& buffer);
    std::uint32_t writeNewSyncRecord(PalmRecordBuffer& buffer) { return writeSyncRecord(0, buffer); }
    void deleteSyncRecord(std::uint32_t uid);
    void deleteSyncDatabase(); // which may be missing; it isn't opened again

    void releaseDatabase();

    // The configuration database, opened for the one call.
    CountedPtr<PalmConfiguration> readConfiguration(std::int16_t category);
    void writeConfiguration(const PalmConfiguration& configuration); // the connection record
    void resetReplicationType(PalmConfiguration& configuration);

    // Calls a function of the application on the handheld, with the names of the two databases; gives the
    // strings of its answer. Raises PalmSyncApiError, RemoteModuleFailed, MissingNul.
    std::vector<std::string> callModule(std::uint32_t functionNumber);

    // Appends a preference of the application, at most 1,024 bytes; the cut is silent.
    void readPreference(PalmRecordBuffer& buffer, std::uint16_t preferenceId);

    void showProgress(Message messageId); // with the display name as $a
    void logToHotSync(const std::string& text, HotSyncActivity activity);

private:
    CountedPtr<PalmDatabase> openApplicationDatabase();
    CountedPtr<PalmDatabase> openSyncDatabase();
    CountedPtr<PalmDatabase> openConfiguration();

    std::string displayName_;
    std::uint32_t appDbCreator_ = 0;
    std::uint32_t appDbType_ = 0;
    std::string appDbName_;
    std::uint32_t syncDbCreator_ = 0;
    std::uint32_t syncDbType_ = 0;
    std::string syncDbName_;
    CountedPtr<PalmDatabase> openDatabase_; // null when none is open
    bool openIsSync_ = false;
    ProgressCallback progressCallback_;
};

} // namespace tsr
