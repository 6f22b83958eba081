#include <gtest/gtest.h>

#include "handheld/logControl.h"
#include "platform/hotSyncLog.h"

namespace tsr {
namespace {

class LogLibrary : public testing::Test {
protected:
    ~LogLibrary() override {
        while (hotSyncLogIsOpen() != 0) HsLogClose();
        hotSyncLogClear();
        hotSyncLogFailOpen(0);
    }
};

TEST_F(LogLibrary, KeepsEntriesInOrder) {
    EXPECT_EQ(HsLogOpen(), 0);
    EXPECT_EQ(HsLogAddEntry("Memo Pad", 1, 0), 0);
    EXPECT_EQ(HsLogAddEntry("", 2, 0), 0);
    EXPECT_EQ(HsLogClose(), 0);
    ASSERT_EQ(hotSyncLogCount(), 2U); // also after it was closed
    EXPECT_STREQ(hotSyncLogText(0), "Memo Pad");
    EXPECT_EQ(hotSyncLogActivity(0), 1);
    EXPECT_STREQ(hotSyncLogText(1), "");
    EXPECT_EQ(hotSyncLogActivity(1), 2);
    EXPECT_EQ(hotSyncLogText(2), nullptr);
    EXPECT_EQ(hotSyncLogActivity(2), -1);
}

TEST_F(LogLibrary, TakesEntriesOnlyWhileItIsOpen) {
    EXPECT_NE(HsLogAddEntry("early", 1, 0), 0);
    HsLogOpen();
    EXPECT_NE(HsLogAddEntry(nullptr, 1, 0), 0);
    HsLogClose();
    EXPECT_NE(HsLogAddEntry("late", 1, 0), 0);
    EXPECT_NE(HsLogClose(), 0);
    EXPECT_EQ(hotSyncLogCount(), 0U);
}

TEST_F(LogLibrary, FailsToOpenByOrder) {
    hotSyncLogFailOpen(7);
    EXPECT_EQ(HsLogOpen(), 7);
    EXPECT_EQ(hotSyncLogIsOpen(), 0);
    hotSyncLogFailOpen(0);
    EXPECT_EQ(HsLogOpen(), 0);
}

} // namespace
} // namespace tsr
