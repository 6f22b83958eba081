#include "foundation/NullLogStream.h"
#include "state/ReplicationState.h"
#include "support/ScriptedSyncManager.h"
#include "support/errors.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

using test::ScriptedSyncManager;

TEST(ReplicationStateOddity, RaisesForAnUnusedBlockThatNoCrcEntryNames) {
    ScriptedSyncManager& device = ScriptedSyncManager::instance();
    device.reset();
    for (int category = 0; category < 6; ++category) { // none of the kinds that are walked has a record
        device.answer("SyncReadNextRecInCategory", 0x4003);
    }
    for (const std::uint32_t id : {1U, 2U}) { // status and UNID block
        device.answerRecord("SyncWriteRec", 0, [id](RawRecordInfo& info) { info.recordId = id; });
    }
    PalmProxy palm(nullptr);
    palm.setApplication("Memo Pad", 1, "MemoDB", 2, 3, "MemoSync", 4);
    NullLogStream log;
    ReplicationState state(log, palm, 0, 100);
    const ItemId item("0123456789abcdef", "00112233445566778899aabbccddeeff");
    state.addEntry(ItemVersion(item, 1), 0, {{1, 0, 0, false}});
    state.removeEntry(item);
    // The block has become record 2, is deleted under its key, and this device finds something there.
    EXPECT_EQ(test::textRaisedBy([&] { state.rewrite(palm); }),
              "Cannot find CRC entry for sequence number block with SUID=0.");
}

} // namespace
} // namespace tsr
