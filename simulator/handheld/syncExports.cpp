#include <bit>

#include "handheld/AttachedHandheld.h"
#include "handheld/export.h"
#include "handheld/syncResult.h"
#include "platform/syncManager.h"

// The functions of the Sync Manager library. Nothing is thrown into the caller.

namespace {

// Memory that runs out is the one thing that can be thrown below.
template <typename Work>
std::int32_t answer(Work work) noexcept {
    tsr::SyncManager* manager = tsr::attachedHandheld().manager();
    if (!manager) return tsr::syncResult::notInitialized;
    try {
        return work(*manager);
    } catch (...) {
        return tsr::syncResult::noDesktopMemory;
    }
}

// The handheld is big-endian.
static_assert(std::endian::native == std::endian::little);

std::uint16_t swapped(std::uint16_t value) { return static_cast<std::uint16_t>(value << 8 | value >> 8); }

std::uint32_t swapped(std::uint32_t value) {
    const std::uint32_t low = swapped(static_cast<std::uint16_t>(value));
    return low << 16 | swapped(static_cast<std::uint16_t>(value >> 16));
}

using tsr::SyncManager;

} // namespace

TSR_EXPORT std::int32_t TSR_PLATFORM_CALL SyncFindDbByTypeCreator(DatabaseSearchBlock* search,
                                                                  DatabaseInfoBlock* found) {
    return answer([&](SyncManager& sync) { return sync.findDbByTypeCreator(search, found); });
}

TSR_EXPORT std::int32_t TSR_PLATFORM_CALL SyncOpenDB(const char* name, std::int32_t card,
                                                     std::uint8_t* handle, std::uint8_t mode) {
    return answer([&](SyncManager& sync) { return sync.openDb(name, card, handle, mode); });
}

TSR_EXPORT std::int32_t TSR_PLATFORM_CALL SyncCreateDB(DatabaseCreateBlock* block) {
    return answer([&](SyncManager& sync) { return sync.createDb(block); });
}

TSR_EXPORT std::int32_t TSR_PLATFORM_CALL SyncCloseDBEx(std::uint8_t handle, std::uint8_t option) {
    return answer([&](SyncManager& sync) { return sync.closeDb(handle, option); });
}

TSR_EXPORT std::int32_t TSR_PLATFORM_CALL SyncDeleteDB(const char* name, std::int32_t card) {
    return answer([&](SyncManager& sync) { return sync.deleteDb(name, card); });
}

TSR_EXPORT std::int32_t TSR_PLATFORM_CALL SyncReadRecordById(RawRecordInfo* record) {
    return answer([&](SyncManager& sync) { return sync.readRecordById(record); });
}

TSR_EXPORT std::int32_t TSR_PLATFORM_CALL SyncReadRecordByIndex(RawRecordInfo* record) {
    return answer([&](SyncManager& sync) { return sync.readRecordByIndex(record); });
}

TSR_EXPORT std::int32_t TSR_PLATFORM_CALL SyncReadNextRecInCategory(RawRecordInfo* record) {
    return answer([&](SyncManager& sync) { return sync.readNextRecInCategory(record); });
}

TSR_EXPORT std::int32_t TSR_PLATFORM_CALL SyncReadNextModifiedRec(RawRecordInfo* record) {
    return answer([&](SyncManager& sync) { return sync.readNextModifiedRec(record); });
}

TSR_EXPORT std::int32_t TSR_PLATFORM_CALL SyncWriteRec(RawRecordInfo* record) {
    return answer([&](SyncManager& sync) { return sync.writeRec(record); });
}

TSR_EXPORT std::int32_t TSR_PLATFORM_CALL SyncDeleteRec(RawRecordInfo* record) {
    return answer([&](SyncManager& sync) { return sync.deleteRec(record); });
}

TSR_EXPORT std::int32_t TSR_PLATFORM_CALL SyncResetRecordIndex(std::uint8_t handle) {
    return answer([&](SyncManager& sync) { return sync.resetRecordIndex(handle); });
}

TSR_EXPORT std::int32_t TSR_PLATFORM_CALL SyncPurgeDeletedRecs(std::uint8_t handle) {
    return answer([&](SyncManager& sync) { return sync.purgeDeletedRecs(handle); });
}

TSR_EXPORT std::int32_t TSR_PLATFORM_CALL SyncResetSyncFlags(std::uint8_t handle) {
    return answer([&](SyncManager& sync) { return sync.resetSyncFlags(handle); });
}

TSR_EXPORT std::int32_t TSR_PLATFORM_CALL SyncGetDBRecordCount(std::uint8_t handle, std::uint16_t* count) {
    return answer([&](SyncManager& sync) { return sync.getDbRecordCount(handle, count); });
}

TSR_EXPORT std::int32_t TSR_PLATFORM_CALL SyncReadDBAppInfoBlock(std::uint8_t handle,
                                                                 AppInfoBlockInfo* block) {
    return answer([&](SyncManager& sync) { return sync.readDbAppInfoBlock(handle, block); });
}

TSR_EXPORT std::int32_t TSR_PLATFORM_CALL SyncWriteDBAppInfoBlock(std::uint8_t handle,
                                                                  AppInfoBlockInfo* block) {
    return answer([&](SyncManager& sync) { return sync.writeDbAppInfoBlock(handle, block); });
}

TSR_EXPORT std::int32_t TSR_PLATFORM_CALL SyncCallRemoteModule(RemoteModuleBlock* block) {
    return answer([&](SyncManager& sync) { return sync.callRemoteModule(block); });
}

TSR_EXPORT std::int32_t TSR_PLATFORM_CALL SyncReadAppPreference(AppPreferenceBlock* block) {
    return answer([&](SyncManager& sync) { return sync.readAppPreference(block); });
}

TSR_EXPORT std::int32_t TSR_PLATFORM_CALL SyncReadSysDateTime(std::uint32_t* time) {
    return answer([&](SyncManager& sync) { return sync.readSysDateTime(time); });
}

TSR_EXPORT std::uint16_t TSR_PLATFORM_CALL SyncGetHHOSVersion(std::uint16_t* minor) {
    std::uint16_t major = 0;
    answer([&](SyncManager& sync) {
        major = sync.getHandheldOsVersion(minor);
        return tsr::syncResult::success;
    });
    return major;
}

TSR_EXPORT std::int32_t TSR_PLATFORM_CALL SyncGetAPIVersion(std::uint32_t* major, std::uint32_t* minor) {
    return answer([&](SyncManager& sync) { return sync.getApiVersion(major, minor); });
}

TSR_EXPORT std::int32_t TSR_PLATFORM_CALL SyncYieldCycles(std::uint16_t milliseconds) {
    return answer([&](SyncManager& sync) { return sync.yieldCycles(milliseconds); });
}

TSR_EXPORT std::uint16_t TSR_PLATFORM_CALL SyncHHToHostWord(std::uint16_t value) { return swapped(value); }
TSR_EXPORT std::uint16_t TSR_PLATFORM_CALL SyncHostToHHWord(std::uint16_t value) { return swapped(value); }
TSR_EXPORT std::uint32_t TSR_PLATFORM_CALL SyncHHToHostDWord(std::uint32_t value) { return swapped(value); }
TSR_EXPORT std::uint32_t TSR_PLATFORM_CALL SyncHostToHHDWord(std::uint32_t value) { return swapped(value); }
