#include "device/deviceStatus.h"

#include "support/ScriptedSyncManager.h"
#include "support/errors.h"

#include "gmock/gmock.h"
#include "gtest/gtest.h"

namespace tsr {
namespace {

using test::ScriptedSyncManager;
using test::textRaisedBy;

class DeviceStatus : public testing::Test {
protected:
    DeviceStatus() { sync.reset(); }

    ScriptedSyncManager& sync = ScriptedSyncManager::instance();
};

TEST_F(DeviceStatus, TellsTheVersionOfTheSystem) {
    sync.osMajor = 10;
    sync.osMinor = 0;
    EXPECT_EQ(osVersionText(), "10.0");
    sync.osMajor = 0;
    EXPECT_EQ(osVersionText(), "?.?");
}

TEST_F(DeviceStatus, TellsTheVersionOfTheInterface) { EXPECT_EQ(apiVersionText(), "2.3"); }

TEST_F(DeviceStatus, ReportsTheCodeOfARepeatedCall) {
    sync.answer("SyncGetAPIVersion", 0x4015);
    sync.answer("SyncGetAPIVersion", 0x4019);
    EXPECT_EQ(textRaisedBy([] { apiVersionText(); }),
              "The function SyncGetAPIVersion( ) failed: This request (command) is not supported by the "
              "handheld.\n");
    sync.answer("SyncGetAPIVersion", 0x4015); // the repeat succeeds
    EXPECT_EQ(textRaisedBy([] { apiVersionText(); }),
              "The function SyncGetAPIVersion( ) failed: Unknown conduit sync error:        0\n");
}

TEST_F(DeviceStatus, ReadsTheClock) {
    EXPECT_EQ(deviceClock(), 1012998896U);
    sync.answer("SyncReadSysDateTime", 0x4015);
    EXPECT_THAT(textRaisedBy([] { deviceClock(); }),
                testing::StartsWith("The function SyncReadSysDateTime( ) failed"));
}

TEST_F(DeviceStatus, RefusesATimeThatIsNone) {
    sync.deviceTime = 0;
    EXPECT_EQ(textRaisedBy([] { deviceClock(); }), "SyncReadSysDateTime returned an invalid time value (0).");
    sync.deviceTime = 0xFFFFFFFF;
    EXPECT_EQ(textRaisedBy([] { deviceClock(); }),
              "SyncReadSysDateTime returned an invalid time value (4294967295).");
}

} // namespace
} // namespace tsr
