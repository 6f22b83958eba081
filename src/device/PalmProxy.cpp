#include "device/PalmProxy.h"

#include <algorithm>
#include <cstring>

#include "device/fourCharacterCode.h"
#include "device/remoteModule.h"
#include "foundation/GeneralError.h"
#include "foundation/PalmSyncApiError.h"
#include "foundation/TaggedOutputStream.h"
#include "foundation/messages.h"
#include "platform/hotSyncLog.h"

namespace tsr {

namespace {

constexpr std::uint32_t ownCreator = fourCharacterCode("TSRA");
constexpr std::uint32_t configurationType = fourCharacterCode("CNFG");
constexpr char configurationName[] = "VellumConfig";
constexpr std::size_t progressRoom = 128; // characters, the NUL included

bool hotSyncLogOpen = false;

void deleteIfThere(const std::string& name) {
    try {
        PalmDatabase::deleteDatabase(name, 0);
    } catch (const PalmSyncApiError& error) {
        if (!error.isNotFound()) throw;
    }
}

std::uint32_t write(PalmDatabase& database, std::uint32_t recordId, PalmRecordBuffer& buffer) {
    buffer.setRecordId(recordId);
    database.writeRecord(buffer);
    return buffer.recordId();
}

void remove(PalmDatabase& database, std::uint32_t uid) {
    PalmRecordBuffer buffer;
    buffer.setRecordId(uid);
    database.deleteRecord(buffer);
}

} // namespace

PalmProxy::PalmProxy(ProgressCallback progressCallback) : progressCallback_(progressCallback) {
    if (HsLogOpen() == 0) hotSyncLogOpen = true;
}

PalmProxy::~PalmProxy() {
    openDatabase_.reset();
    if (!hotSyncLogOpen) return;
    hotSyncLogOpen = false;
    try {
        HsLogClose();
    } catch (...) { // nobody is left to be told
    }
}

void PalmProxy::setApplication(const std::string& displayName, std::uint32_t appDbCreator,
                               const std::string& appDbName, std::uint32_t appDbType,
                               std::uint32_t syncDbCreator, const std::string& syncDbName,
                               std::uint32_t syncDbType) {
    displayName_ = displayName;
    appDbCreator_ = appDbCreator;
    appDbName_ = appDbName;
    appDbType_ = appDbType;
    syncDbCreator_ = syncDbCreator;
    syncDbName_ = syncDbName;
    syncDbType_ = syncDbType;
}

CountedPtr<PalmDatabase> PalmProxy::openApplicationDatabase() {
    if (!openDatabase_ || openIsSync_) {
        releaseDatabase();
        openDatabase_ = PalmDatabase::openOrCreate(appDbCreator_, appDbType_, appDbName_, 0, false);
    }
    return openDatabase_;
}

CountedPtr<PalmDatabase> PalmProxy::openSyncDatabase() {
    if (!openDatabase_ || !openIsSync_) {
        if (syncDbCreator_ == 0 || syncDbType_ == 0 || syncDbName_.empty()) {
            throw GeneralError(Message::NoSyncDatabase);
        }
        openDatabase_.reset();
        openDatabase_ = PalmDatabase::openOrCreate(syncDbCreator_, syncDbType_, syncDbName_, 0, true);
        openIsSync_ = true;
    }
    return openDatabase_;
}

CountedPtr<PalmDatabase> PalmProxy::openConfiguration() {
    releaseDatabase();
    return PalmDatabase::openOrCreate(ownCreator, configurationType, configurationName, 0, true);
}

void PalmProxy::releaseDatabase() {
    openDatabase_.reset();
    openIsSync_ = false;
}

void PalmProxy::readRecordById(PalmRecordBuffer& buffer, std::uint32_t id) {
    openApplicationDatabase()->readRecordById(buffer, id);
}

bool PalmProxy::readRecordByIndex(PalmRecordBuffer& buffer, std::uint16_t index) {
    return openApplicationDatabase()->readRecordByIndex(buffer, index);
}

bool PalmProxy::readFirstModified(PalmRecordBuffer& buffer) {
    return openApplicationDatabase()->readFirstModified(buffer);
}

bool PalmProxy::readNextModified(PalmRecordBuffer& buffer) {
    return openApplicationDatabase()->readNextModified(buffer);
}

bool PalmProxy::readFirstInCategory(PalmRecordBuffer& buffer, std::int16_t category) {
    return openApplicationDatabase()->readFirstInCategory(buffer, category);
}

bool PalmProxy::readNextInCategory(PalmRecordBuffer& buffer) {
    return openApplicationDatabase()->readNextInCategory(buffer);
}

std::uint32_t PalmProxy::writeRecord(std::uint32_t recordId, PalmRecordBuffer& buffer) {
    return write(*openApplicationDatabase(), recordId, buffer);
}

void PalmProxy::deleteRecord(std::uint32_t uid) { remove(*openApplicationDatabase(), uid); }

void PalmProxy::readAppInfoBlock(PalmRecordBuffer& buffer) {
    openApplicationDatabase()->readAppInfoBlock(buffer);
}

void PalmProxy::writeAppInfoBlock(const PalmRecordBuffer& buffer) {
    openApplicationDatabase()->writeAppInfoBlock(buffer);
}

void PalmProxy::purgeAndResetFlags() {
    const CountedPtr<PalmDatabase> database = openApplicationDatabase();
    database->purgeDeletedRecords();
    database->resetSyncFlags();
}

void PalmProxy::clearApplication() {
    deleteIfThere(appDbName_);
    openApplicationDatabase();
}

void PalmProxy::readSyncRecordById(PalmRecordBuffer& buffer, std::uint32_t id) {
    openSyncDatabase()->readRecordById(buffer, id);
}

bool PalmProxy::readFirstInSyncCategory(PalmRecordBuffer& buffer, std::int16_t category) {
    return openSyncDatabase()->readFirstInCategory(buffer, category);
}

bool PalmProxy::readNextInSyncCategory(PalmRecordBuffer& buffer) {
    return openSyncDatabase()->readNextInCategory(buffer);
}

std::uint32_t PalmProxy::writeSyncRecord(std::uint32_t recordId, PalmRecordBuffer& buffer) {
    return write(*openSyncDatabase(), recordId, buffer);
}

void PalmProxy::deleteSyncRecord(std::uint32_t uid) { remove(*openSyncDatabase(), uid); }

void PalmProxy::deleteSyncDatabase() { deleteIfThere(syncDbName_); }

CountedPtr<PalmConfiguration> PalmProxy::readConfiguration(std::int16_t category) {
    return CountedPtr<PalmConfiguration>(new PalmConfiguration(*openConfiguration(), category));
}

void PalmProxy::writeConfiguration(const PalmConfiguration& configuration) {
    configuration.writeConnectionRecord(*openConfiguration());
}

void PalmProxy::resetReplicationType(PalmConfiguration& configuration) {
    releaseDatabase();
    configuration.resetType(*PalmDatabase::openByName(configurationName, 0));
}

std::vector<std::string> PalmProxy::callModule(std::uint32_t functionNumber) {
    releaseDatabase();
    return callRemoteModule({std::to_string(functionNumber), "0", "0", appDbName_, syncDbName_});
}

void PalmProxy::readPreference(PalmRecordBuffer& buffer, std::uint16_t preferenceId) {
    std::uint8_t bytes[1024] = {};
    AppPreferenceBlock block{};
    block.creator = appDbCreator_;
    block.preferenceId = preferenceId;
    block.requestedBytes = sizeof bytes;
    block.backedUp = 1;
    block.bufferSize = sizeof bytes;
    block.buffer = bytes;
    if (const std::int32_t result = SyncReadAppPreference(&block); result != 0) {
        throw PalmSyncApiError(static_cast<std::uint32_t>(result), "SyncReadAppPreference");
    }
    buffer.appendBytes(bytes, std::min<std::size_t>(block.actualBytes, sizeof bytes));
}

void PalmProxy::showProgress(Message messageId) {
    if (progressCallback_ == nullptr) return;
    TaggedOutputStringStream stream;
    stream << loadMessage(messageId) << Tag('a') << displayName_;
    char text[progressRoom] = {};
    stream.str().copy(text, sizeof text - 1);
    progressCallback_(text);
}

void PalmProxy::logToHotSync(const std::string& text, HotSyncActivity activity) {
    HsLogAddEntry(text.c_str(), activityCode(activity), 0);
}

} // namespace tsr
