#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/callingConvention.h"

// The binary interface of SYNC20, the Sync Manager library of the HotSync software: all device access goes
// through these functions. Structures are packed to one byte and in host byte order; what the pointed-to
// bytes of a record mean is the business of its application. Every function but the noted ones returns 0 or a
// code.

extern "C" {

#pragma pack(push, 1)

// One record on its way to or from the handheld.
struct RawRecordInfo {
    std::uint8_t fileHandle; // the open database
    std::uint32_t recordId;  // 24-bit unique id; 0 on a write asks for a fresh one
    std::uint16_t recordIndex;
    std::uint8_t attributes;  // 0x80 deleted, 0x40 dirty, 0x20 busy, 0x10 secret, 0x08 archived
    std::int16_t categoryId;  // 0 to 15
    std::uint32_t conduitId;  // always 0
    std::uint32_t recordSize; // bytes: the true size on a read, also when it did not fit
    std::uint16_t bufferSize; // bytes: capacity of buffer
    std::uint8_t* buffer;
    std::uint32_t reserved;
};

struct AppInfoBlockInfo {
    char fileName[32];        // never filled in
    std::uint16_t totalBytes; // capacity of buffer
    std::uint16_t bytesRead;  // true size of the block
    std::uint8_t* buffer;
    std::uint32_t reserved;
};

struct DatabaseSearchBlock {
    std::uint8_t optionFlags; // always 0xC0
    std::uint8_t searchFlags; // 0x80 starts a search, 0 goes on with it
    std::uint32_t type;
    std::uint32_t creator;
};

struct DatabaseInfoBlock {
    std::uint32_t cardNumber;
    std::uint8_t unread[6];
    char name[32]; // ends with a NUL
    std::uint8_t unreadToo[82];
    std::uint32_t reserved;
};

struct DatabaseCreateBlock {
    std::uint8_t fileHandle; // output: the database, open
    std::uint32_t creator;
    std::uint32_t flags; // 0x40 for the conduit's own databases
    std::uint8_t cardNumber;
    char name[32]; // ends with a NUL
    std::uint32_t type;
    std::uint16_t version;
    std::uint32_t reserved;
};

struct RemoteModuleBlock {
    std::uint32_t creator;
    std::uint32_t type;
    std::uint16_t actionCode;
    std::uint32_t parameterSize;
    std::uint8_t* parameter;
    std::uint32_t resultBufferSize;
    std::uint8_t* resultBuffer;
    std::uint32_t resultCode; // output
    std::uint32_t resultSize; // output: bytes of result
};

struct AppPreferenceBlock {
    std::uint16_t reservedStart;
    std::uint32_t creator;
    std::uint16_t preferenceId;
    std::uint16_t requestedBytes;
    std::uint16_t version;     // output
    std::uint16_t actualBytes; // output: true size
    std::uint32_t backedUp;    // 1 for the backed-up preferences
    std::uint32_t bufferSize;
    std::uint8_t* buffer;
    std::uint32_t reserved;
};

#pragma pack(pop)

static_assert(sizeof(void*) != 4 || sizeof(RawRecordInfo) == 28);
static_assert(sizeof(void*) != 4 || sizeof(AppInfoBlockInfo) == 44);
static_assert(sizeof(DatabaseSearchBlock) == 10);
static_assert(sizeof(DatabaseInfoBlock) == 128);
static_assert(offsetof(DatabaseInfoBlock, name) == 10);
static_assert(sizeof(DatabaseCreateBlock) == 52);
static_assert(sizeof(void*) != 4 || sizeof(RemoteModuleBlock) == 34);
static_assert(sizeof(void*) != 4 || sizeof(AppPreferenceBlock) == 30);

std::int32_t TSR_PLATFORM_CALL SyncFindDbByTypeCreator(DatabaseSearchBlock* search, DatabaseInfoBlock* found);
std::int32_t TSR_PLATFORM_CALL SyncOpenDB(const char* name, std::int32_t card, std::uint8_t* handle,
                                          std::uint8_t mode);
std::int32_t TSR_PLATFORM_CALL SyncCreateDB(DatabaseCreateBlock* block);
std::int32_t TSR_PLATFORM_CALL SyncCloseDBEx(std::uint8_t handle, std::uint8_t option);
std::int32_t TSR_PLATFORM_CALL SyncDeleteDB(const char* name, std::int32_t card);

std::int32_t TSR_PLATFORM_CALL SyncReadRecordById(RawRecordInfo* record);
std::int32_t TSR_PLATFORM_CALL SyncReadRecordByIndex(RawRecordInfo* record);
std::int32_t TSR_PLATFORM_CALL SyncReadNextRecInCategory(RawRecordInfo* record);
std::int32_t TSR_PLATFORM_CALL SyncReadNextModifiedRec(RawRecordInfo* record);
std::int32_t TSR_PLATFORM_CALL SyncWriteRec(RawRecordInfo* record);
std::int32_t TSR_PLATFORM_CALL SyncDeleteRec(RawRecordInfo* record);

std::int32_t TSR_PLATFORM_CALL SyncResetRecordIndex(std::uint8_t handle);
std::int32_t TSR_PLATFORM_CALL SyncPurgeDeletedRecs(std::uint8_t handle);
std::int32_t TSR_PLATFORM_CALL SyncResetSyncFlags(std::uint8_t handle);
std::int32_t TSR_PLATFORM_CALL SyncGetDBRecordCount(std::uint8_t handle, std::uint16_t* count);

std::int32_t TSR_PLATFORM_CALL SyncReadDBAppInfoBlock(std::uint8_t handle, AppInfoBlockInfo* block);
std::int32_t TSR_PLATFORM_CALL SyncWriteDBAppInfoBlock(std::uint8_t handle, AppInfoBlockInfo* block);

std::int32_t TSR_PLATFORM_CALL SyncCallRemoteModule(RemoteModuleBlock* block);
std::int32_t TSR_PLATFORM_CALL SyncReadAppPreference(AppPreferenceBlock* block);
std::int32_t TSR_PLATFORM_CALL SyncReadSysDateTime(std::uint32_t* time); // seconds since 1970
// The result is the major number, 0 when there is none.
std::uint16_t TSR_PLATFORM_CALL SyncGetHHOSVersion(std::uint16_t* minor);
std::int32_t TSR_PLATFORM_CALL SyncGetAPIVersion(std::uint32_t* major, std::uint32_t* minor);
std::int32_t TSR_PLATFORM_CALL SyncYieldCycles(std::uint16_t milliseconds);

// Between the byte order of the handheld, big-endian, and that of this machine.
std::uint16_t TSR_PLATFORM_CALL SyncHHToHostWord(std::uint16_t value);
std::uint16_t TSR_PLATFORM_CALL SyncHostToHHWord(std::uint16_t value);
std::uint32_t TSR_PLATFORM_CALL SyncHHToHostDWord(std::uint32_t value);
std::uint32_t TSR_PLATFORM_CALL SyncHostToHHDWord(std::uint32_t value);

} // extern "C"
