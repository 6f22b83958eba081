#include "platform/syncManager.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

// How much further back than on 32 bits a field stands behind each pointer.
constexpr std::size_t wider = sizeof(void*) - 4;

TEST(SyncManagerBlock, OfARecord) {
    EXPECT_EQ(offsetof(RawRecordInfo, fileHandle), 0u);
    EXPECT_EQ(offsetof(RawRecordInfo, recordId), 1u);
    EXPECT_EQ(offsetof(RawRecordInfo, recordIndex), 5u);
    EXPECT_EQ(offsetof(RawRecordInfo, attributes), 7u);
    EXPECT_EQ(offsetof(RawRecordInfo, categoryId), 8u);
    EXPECT_EQ(offsetof(RawRecordInfo, conduitId), 10u);
    EXPECT_EQ(offsetof(RawRecordInfo, recordSize), 14u);
    EXPECT_EQ(offsetof(RawRecordInfo, bufferSize), 18u);
    EXPECT_EQ(offsetof(RawRecordInfo, buffer), 20u);
    EXPECT_EQ(offsetof(RawRecordInfo, reserved), 24 + wider);
    EXPECT_EQ(sizeof(RawRecordInfo), 28 + wider);
}

TEST(SyncManagerBlock, OfApplicationInfo) {
    EXPECT_EQ(offsetof(AppInfoBlockInfo, fileName), 0u);
    EXPECT_EQ(offsetof(AppInfoBlockInfo, totalBytes), 32u);
    EXPECT_EQ(offsetof(AppInfoBlockInfo, bytesRead), 34u);
    EXPECT_EQ(offsetof(AppInfoBlockInfo, buffer), 36u);
    EXPECT_EQ(offsetof(AppInfoBlockInfo, reserved), 40 + wider);
    EXPECT_EQ(sizeof(AppInfoBlockInfo), 44 + wider);
}

TEST(SyncManagerBlock, OfASearch) {
    EXPECT_EQ(offsetof(DatabaseSearchBlock, optionFlags), 0u);
    EXPECT_EQ(offsetof(DatabaseSearchBlock, searchFlags), 1u);
    EXPECT_EQ(offsetof(DatabaseSearchBlock, type), 2u);
    EXPECT_EQ(offsetof(DatabaseSearchBlock, creator), 6u);
    EXPECT_EQ(sizeof(DatabaseSearchBlock), 10u);
}

TEST(SyncManagerBlock, OfADatabase) {
    EXPECT_EQ(offsetof(DatabaseInfoBlock, cardNumber), 0u);
    EXPECT_EQ(offsetof(DatabaseInfoBlock, name), 10u);
    EXPECT_EQ(sizeof DatabaseInfoBlock::name, 32u);
    EXPECT_EQ(offsetof(DatabaseInfoBlock, reserved), 124u);
    EXPECT_EQ(sizeof(DatabaseInfoBlock), 128u);
}

TEST(SyncManagerBlock, OfANewDatabase) {
    EXPECT_EQ(offsetof(DatabaseCreateBlock, fileHandle), 0u);
    EXPECT_EQ(offsetof(DatabaseCreateBlock, creator), 1u);
    EXPECT_EQ(offsetof(DatabaseCreateBlock, flags), 5u);
    EXPECT_EQ(offsetof(DatabaseCreateBlock, cardNumber), 9u);
    EXPECT_EQ(offsetof(DatabaseCreateBlock, name), 10u);
    EXPECT_EQ(offsetof(DatabaseCreateBlock, type), 42u);
    EXPECT_EQ(offsetof(DatabaseCreateBlock, version), 46u);
    EXPECT_EQ(offsetof(DatabaseCreateBlock, reserved), 48u);
    EXPECT_EQ(sizeof(DatabaseCreateBlock), 52u);
}

TEST(SyncManagerBlock, OfAModuleOnTheHandheld) {
    EXPECT_EQ(offsetof(RemoteModuleBlock, creator), 0u);
    EXPECT_EQ(offsetof(RemoteModuleBlock, type), 4u);
    EXPECT_EQ(offsetof(RemoteModuleBlock, actionCode), 8u);
    EXPECT_EQ(offsetof(RemoteModuleBlock, parameterSize), 10u);
    EXPECT_EQ(offsetof(RemoteModuleBlock, parameter), 14u);
    EXPECT_EQ(offsetof(RemoteModuleBlock, resultBufferSize), 18 + wider);
    EXPECT_EQ(offsetof(RemoteModuleBlock, resultBuffer), 22 + wider);
    EXPECT_EQ(offsetof(RemoteModuleBlock, resultCode), 26 + 2 * wider);
    EXPECT_EQ(offsetof(RemoteModuleBlock, resultSize), 30 + 2 * wider);
    EXPECT_EQ(sizeof(RemoteModuleBlock), 34 + 2 * wider);
}

TEST(SyncManagerBlock, OfPreferences) {
    EXPECT_EQ(offsetof(AppPreferenceBlock, reservedStart), 0u);
    EXPECT_EQ(offsetof(AppPreferenceBlock, creator), 2u);
    EXPECT_EQ(offsetof(AppPreferenceBlock, preferenceId), 6u);
    EXPECT_EQ(offsetof(AppPreferenceBlock, requestedBytes), 8u);
    EXPECT_EQ(offsetof(AppPreferenceBlock, version), 10u);
    EXPECT_EQ(offsetof(AppPreferenceBlock, actualBytes), 12u);
    EXPECT_EQ(offsetof(AppPreferenceBlock, backedUp), 14u);
    EXPECT_EQ(offsetof(AppPreferenceBlock, bufferSize), 18u);
    EXPECT_EQ(offsetof(AppPreferenceBlock, buffer), 22u);
    EXPECT_EQ(offsetof(AppPreferenceBlock, reserved), 26 + wider);
    EXPECT_EQ(sizeof(AppPreferenceBlock), 30 + wider);
}

} // namespace
} // namespace tsr
