#include "conduit/openConduit.h"

#include <memory>

#include "support/SessionTest.h"
#include "support/testClock.h"

#include "gmock/gmock.h"

namespace tsr {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Entry = std::pair<std::string, int>;

class OpenConduitTest : public test::SessionTest {
protected:
    OpenConduitTest() { test::setClock(1012998896); }

    std::int32_t open(std::uint32_t creator, std::int32_t syncType = 0) {
        const auto properties = std::make_unique<SyncProperties>();
        properties->creator = creator;
        properties->syncType = syncType;
        return openConduit(nullptr, properties.get());
    }
};

TEST_F(OpenConduitTest, RefusesOtherCreatorsWithoutATrace) {
    for (const std::uint32_t creator : {0u, 0xFFFFFFFFu, 0x6D656D70u, 0x4D454D4Fu}) { // "memp", "MEMO"
        SCOPED_TRACE(creator);
        EXPECT_EQ(open(creator), -1);
    }
    EXPECT_THAT(logTexts(), IsEmpty());
    EXPECT_THAT(server->codes(), IsEmpty());
    EXPECT_EQ(handheldCallCount(), 0u);
}

TEST_F(OpenConduitTest, PicksTheApplicationByItsCreator) {
    const std::pair<std::uint32_t, const char*> rows[] = {
        {0x6D656D6F, "Memo Pad"},
        {0x54535241, "FreeTime"},
    };
    for (const auto& [creator, name] : rows) {
        SCOPED_TRACE(name);
        hotSyncLogClear();
        EXPECT_EQ(open(creator), 0);
        EXPECT_EQ(logEntries().front(), Entry(name, 19)); // each call logs its own start
    }
}

TEST_F(OpenConduitTest, AsksForASlowSyncForTheSyncTypeOneAlone) {
    // A slow session reads every record by its index, any other the modified ones.
    handheld.create("MemoDB", 0x44415441, 0x6D656D6F);
    const std::pair<std::int32_t, std::uint64_t> rows[] = {{1, 0}, {0, 1}, {2, 1}, {6, 1}, {-1, 1}};
    for (const auto& [syncType, reads] : rows) {
        SCOPED_TRACE(syncType);
        configureType(2);
        const std::uint64_t before = handheldFunctionCallCount("SyncReadNextModifiedRec");
        open(0x6D656D6F, syncType);
        EXPECT_EQ(handheldFunctionCallCount("SyncReadNextModifiedRec") - before, reads);
    }
}

} // namespace
} // namespace tsr
