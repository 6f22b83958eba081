#include "conduit/openConduit.h"

#include <new>

#include "support/ScriptedSyncManager.h"

#include "gmock/gmock.h"
#include "gtest/gtest.h"

namespace tsr {
namespace {

using test::ScriptedSyncManager;
using testing::ElementsAre;

void ignoreProgress(const char*) {}

class OpenConduitGuard : public testing::Test {
protected:
    OpenConduitGuard() { sync.reset(); }
    ~OpenConduitGuard() override { sync.reset(); }

    static std::int32_t open(std::uint32_t creator) {
        SyncProperties properties{};
        properties.creator = creator;
        return openConduit(ignoreProgress, &properties);
    }

    ScriptedSyncManager& sync = ScriptedSyncManager::instance();
};

TEST_F(OpenConduitGuard, OnlyOpensAndClosesTheLogForAnUnknownCreator) {
    EXPECT_EQ(open(0), -1);
    EXPECT_THAT(sync.calls, ElementsAre("HsLogOpen()", "HsLogClose()"));
    EXPECT_TRUE(sync.log.empty());
}

TEST_F(OpenConduitGuard, LeavesALogAloneThatItCouldNotOpen) {
    sync.logOpenResult = 0x4015;
    EXPECT_EQ(open(0), -1);
    EXPECT_THAT(sync.calls, ElementsAre("HsLogOpen()"));
}

TEST_F(OpenConduitGuard, TellsOfWhatADeviceCallThrows) {
    sync.answerFind(0, [](DatabaseInfoBlock&) { throw std::bad_alloc(); });
    EXPECT_EQ(open(0x54535241), 0);
    using Entry = std::pair<std::string, std::int32_t>;
    EXPECT_THAT(
        sync.log,
        ElementsAre(
            Entry("FreeTime", 19),
            Entry("** An unrecoverable error occurred whilst retrieving Palm configuration information.", 22),
            Entry("**** An exception of unknown type was caught.", 22), Entry("FreeTime", 21)));
    EXPECT_EQ(sync.calls.back(), "HsLogClose()");
}

TEST_F(OpenConduitGuard, ThrowsNothingWhenNotEvenTheLogCanBeWritten) {
    sync.logFault = [] { throw std::bad_alloc(); };
    EXPECT_EQ(open(0x54535241), 0);
    EXPECT_EQ(sync.calls.back(), "HsLogClose()");
}

TEST_F(OpenConduitGuard, ThrowsNothingWhenTheLogCannotBeClosed) {
    sync.closeFault = [] { throw std::bad_alloc(); };
    EXPECT_EQ(open(0), -1);
    EXPECT_EQ(open(0), -1);
    EXPECT_THAT(sync.calls, ElementsAre("HsLogOpen()", "HsLogClose()", "HsLogOpen()", "HsLogClose()"));
}

} // namespace
} // namespace tsr
