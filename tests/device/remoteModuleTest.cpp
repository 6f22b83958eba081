#include "device/remoteModule.h"

#include <new>

#include "support/ScriptedSyncManager.h"
#include "support/errors.h"

#include "gmock/gmock.h"
#include "gtest/gtest.h"

namespace tsr {
namespace {

using test::ScriptedSyncManager;
using test::textRaisedBy;

class RemoteModule : public testing::Test {
protected:
    RemoteModule() { sync.reset(); }

    // Answers with `size` bytes, the first of which are `text`.
    void answer(const std::string& text, std::uint32_t size) {
        sync.answerModule(0, [=](RemoteModuleBlock& block) {
            text.copy(reinterpret_cast<char*>(block.resultBuffer), block.resultBufferSize);
            block.resultSize = size;
        });
    }

    ScriptedSyncManager& sync = ScriptedSyncManager::instance();
};

TEST_F(RemoteModule, GivesNoStringsForAnEmptyResult) {
    answer("", 0);
    EXPECT_TRUE(callRemoteModule({"6"}).empty());
}

TEST_F(RemoteModule, GivesEveryStringOfTheResult) {
    answer(std::string("a\0\0bc\0", 6), 6);
    EXPECT_THAT(callRemoteModule({"6"}), testing::ElementsAre("a", "", "bc"));
}

TEST_F(RemoteModule, RefusesAStringWithoutItsEnd) {
    answer("ab", 2);
    EXPECT_EQ(textRaisedBy([] { callRemoteModule({"6"}); }), "Null terminator not found in string.");
}

TEST_F(RemoteModule, RaisesAFailedCall) {
    sync.answerModule(0x4019, {});
    EXPECT_EQ(textRaisedBy([] { callRemoteModule({"6"}); }),
              "The function SyncCallRemoteModule( ) failed: This request (command) is not supported by the "
              "handheld.\n");
}

TEST_F(RemoteModule, RaisesAFailureOfTheModule) {
    sync.answerModule(0, [](RemoteModuleBlock& block) { block.resultCode = 4294967295U; });
    EXPECT_EQ(textRaisedBy([] { callRemoteModule({"6"}); }),
              "The call to the remote module failed with result code 4294967295.");
}

TEST_F(RemoteModule, FillsALongerResultWithZeros) {
    answer(std::string(100, 'x'), 102);
    EXPECT_THAT(callRemoteModule({"6"}), testing::ElementsAre(std::string(100, 'x'), ""));
}

TEST_F(RemoteModule, BelievesAResultUpTo65535Bytes) {
    answer("", 65535);
    EXPECT_EQ(callRemoteModule({"6"}).size(), 65535U);
    answer("", 65536);
    EXPECT_THROW(callRemoteModule({"6"}), std::bad_alloc);
}

} // namespace
} // namespace tsr
