// The conduit as a HotSync manager holds it, without a handheld attached.

#include <string>
#include <vector>

#include <windows.h>

#include "conduit/openConduit.h"
#include "handheld/logControl.h"
#include "host/hostSystem.h"
#include "hotsync/ConduitLibrary.h"
#include "platform/module.h"

#include "gmock/gmock.h"

namespace tsr {
namespace {

using testing::Contains;

constexpr std::uint32_t memoPad = 0x6D656D6F; // memo

void TSR_PLATFORM_CALL ignoreProgress(const char*) {}

SyncProperties propertiesFor(std::uint32_t creator) {
    SyncProperties properties{};
    properties.creator = creator;
    return properties;
}

std::vector<std::string> takeLog() {
    std::vector<std::string> texts;
    for (std::uint64_t i = 0; i < hotSyncLogCount(); ++i) texts.emplace_back(hotSyncLogText(i));
    hotSyncLogClear();
    return texts;
}

// This program imports it by its name, too, so that it is loaded from the start.
TEST(Library, IsFoundByTheNameOfItsExport) {
    const SyncProperties unknown = propertiesFor(0);
    EXPECT_EQ(openConduit(&ignoreProgress, &unknown), -1);
    const SyncProperties memo = propertiesFor(memoPad);
    EXPECT_EQ(openConduit(&ignoreProgress, &memo), 0);
    EXPECT_THAT(takeLog(), Contains("Memo Pad"));
}

// A file of the library that this process hasn't loaded.
class OtherName : public testing::Test {
protected:
    // The file stays with the build, as its library stays with this process.
    OtherName() { CopyFileA((folder + "TsrConduit.dll").c_str(), path.c_str(), FALSE); }

    void callOnce() {
        const ConduitLibrary conduit(path);
        const SyncProperties memo = propertiesFor(memoPad);
        EXPECT_EQ(conduit.openConduit()(&ignoreProgress, &memo), 0);
    }

    const std::string folder = platform::moduleDirectory("windows_tests.exe");
    const std::string path = folder + "TsrOther.dll";
};

// More often than a process has places for what threads hold (1,088).
TEST_F(OtherName, CanBeLoadedAndFreedForEachSession) {
    constexpr int sessions = 1200;
    test::ProcessUse before;
    for (int session = 0; session < sessions; ++session) {
        if (session == 10) before = test::processUse(); // what the system sets up is there
        callOnce();
        hotSyncLogClear();
    }
    const test::ProcessUse after = test::processUse();
    EXPECT_EQ(after.handles, before.handles);
    EXPECT_LT(after.bytes, before.bytes + 1000);
}

} // namespace
} // namespace tsr
