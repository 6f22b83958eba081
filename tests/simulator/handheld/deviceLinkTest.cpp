// The conduit's own device code on the simulated handheld: each takes the other by its word.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <optional>

#include "device/PalmCategories.h"
#include "device/PalmProxy.h"
#include "device/ReplicationType.h"
#include "foundation/Error.h"
#include "foundation/PalmSyncApiError.h"
#include "handheld/ConfigurationDatabase.h"
#include "handheld/logControl.h"
#include "handheld/standardDatabases.h"
#include "handheld/syncControl.h"
#include "support/bytes.h"

namespace tsr {
namespace {

using test::bytes;
using testing::ElementsAre;

constexpr std::int16_t memoConfiguration = 7;

class DeviceLink : public testing::Test {
protected:
    DeviceLink() {
        handheld_.clock = 1012998896;
        addStandardDatabases(handheld_);
        handheldAttach(&handheld_);
        proxy_.emplace([](const char*) {});
        proxy_->setApplication("Memo Pad", 0x6D656D6F, "MemoDB", 0x44415441, 0x54535241, "MemoSync",
                               0x4D454D4F);
    }
    ~DeviceLink() override {
        proxy_.reset();
        EXPECT_EQ(handheldOpenDatabases(), 0U);
        EXPECT_EQ(hotSyncLogIsOpen(), 0);
        handheldDetach();
    }

    HandheldDatabase& memos() { return *handheld_.find("MemoDB"); }

    Handheld handheld_;
    std::optional<PalmProxy> proxy_;
};

TEST_F(DeviceLink, ReadsAndWritesTheConfiguration) {
    ConfigurationDatabase configuration(handheld_);
    configuration.setConnection({7, 8, "Pat", "pw", "", "host", "8000"});
    configuration.setApplication(memoConfiguration, {NextReplication::Slow, 'S', 9, 1, 2});
    auto read = proxy_->readConfiguration(memoConfiguration);
    EXPECT_EQ(read->replicationType(), static_cast<std::int32_t>(ReplicationType::Slow));
    EXPECT_EQ(read->conflictRule(), "S");
    EXPECT_EQ(read->serverAddress(), "host");
    EXPECT_EQ(read->serverPort(), "8000");
    EXPECT_EQ(read->userName(), "Pat");
    EXPECT_EQ(read->password(), "pw");
    EXPECT_EQ(read->deviceTimeText(), "287152496"); // 1012998896 - 725846400
    read->setUserName("Kim");
    proxy_->writeConfiguration(*read);
    proxy_->resetReplicationType(*read);
    ConfigurationDatabase after(handheld_);
    EXPECT_EQ(after.connection(), (ConnectionChoice{7, 8, "Kim", "pw", "", "host", "8000"}));
    EXPECT_EQ(after.applications().at(memoConfiguration),
              (ApplicationChoice{NextReplication::Normal, 'S', 9, 1, 2}));
}

TEST_F(DeviceLink, WalksModifiedRecordsOfAnySize) {
    std::vector<std::pair<std::uint32_t, std::size_t>> expected;
    for (std::size_t size : {0, 1, 1024, 1025, 2049, 40000, 65535}) {
        memos().writeRecord(0, 0, false, {}); // clean, so passed over
        expected.emplace_back(memos().addRecord(std::vector<std::uint8_t>(size, 7)), size);
    }
    std::vector<std::pair<std::uint32_t, std::size_t>> walked;
    PalmRecordBuffer buffer;
    for (bool more = proxy_->readFirstModified(buffer); more; more = proxy_->readNextModified(buffer)) {
        walked.emplace_back(buffer.recordId(), buffer.size());
        if (buffer.size() > 0) {
            EXPECT_EQ(buffer.byteAt(buffer.size() - 1), 7);
        }
    }
    EXPECT_EQ(walked, expected);
}

TEST_F(DeviceLink, TellsDeletedFromArchived) {
    const std::uint32_t deleted = memos().addRecord({'a', 0});
    const std::uint32_t archived = memos().addRecord({'b', 0});
    memos().deleteRecord(deleted);
    memos().archiveRecord(archived);
    PalmRecordBuffer buffer;
    ASSERT_TRUE(proxy_->readFirstModified(buffer));
    EXPECT_TRUE(buffer.isDeleted());
    EXPECT_FALSE(buffer.isArchived());
    ASSERT_TRUE(proxy_->readNextModified(buffer));
    EXPECT_FALSE(buffer.isDeleted());
    EXPECT_TRUE(buffer.isArchived());
    EXPECT_EQ(buffer.readString(), "b");
    EXPECT_FALSE(proxy_->readNextModified(buffer));
    proxy_->purgeAndResetFlags();
    EXPECT_EQ(memos().records().size(), 0U);
}

TEST_F(DeviceLink, ReadsTheStandardCategories) {
    PalmCategories categories(*proxy_);
    EXPECT_EQ(categories.categoryName(0), "Unfiled");
    EXPECT_EQ(categories.categoryName(2), "Personal");
    EXPECT_EQ(categories.categoryName(15), "");
}

TEST_F(DeviceLink, HasPendingRecordsCopied) {
    PalmRecordBuffer block;
    block.setCategoryId(2);
    block.appendDword(0);
    block.append24(0);
    const std::uint32_t blockId = proxy_->writeNewSyncRecord(block);
    PalmRecordBuffer pending;
    pending.setCategoryId(3);
    pending.appendByte(0);
    pending.appendByte(5);
    pending.appendString("Hi");
    const std::uint32_t pendingId = proxy_->writeNewSyncRecord(pending);
    PalmRecordBuffer fixup;
    fixup.setCategoryId(6);
    fixup.appendByte(0);
    fixup.append24(pendingId);
    fixup.append24(blockId);
    fixup.appendWord(4);
    proxy_->writeNewSyncRecord(fixup);
    EXPECT_THAT(proxy_->callModule(6), ElementsAre("0", "17"));
    EXPECT_EQ(memos().records().all(), (std::vector<HandheldRecord>{{1, 0, 5, {'H', 'i', 0}}}));
    const HandheldDatabase& sync = *handheld_.find("MemoSync");
    EXPECT_EQ(sync.records().all(),
              (std::vector<HandheldRecord>{{blockId, 0, 2, bytes("00 00 00 00 00 00 01")}}));
    EXPECT_EQ(sync.header().attributes, 0x40);
    EXPECT_THROW(proxy_->callModule(7), Error);
}

TEST_F(DeviceLink, ClearsAnApplication) {
    memos().addRecord({'a', 0});
    proxy_->clearApplication();
    EXPECT_EQ(memos().records().size(), 0U);
    proxy_->deleteSyncDatabase(); // which is not there
}

TEST_F(DeviceLink, ReadsPreferences) {
    handheld_.preferences[{0x6D656D6F, 3, true}] = {1, std::vector<std::uint8_t>(1500, 7)};
    PalmRecordBuffer buffer;
    proxy_->readPreference(buffer, 3);
    EXPECT_EQ(buffer.byteAt(1023), 7);
    EXPECT_THROW(proxy_->readPreference(buffer, 4), PalmSyncApiError);
}

// A close that fails leaves its database open on the handheld until the HotSync ends.
TEST_F(DeviceLink, AFaultAtAnyCallIsOverWithTheHotSync) {
    memos().addRecord({'a', 0});
    const auto walk = [this] {
        PalmRecordBuffer buffer;
        EXPECT_TRUE(proxy_->readFirstModified(buffer));
        EXPECT_FALSE(proxy_->readFirstInSyncCategory(buffer, 1));
    };
    for (std::uint64_t call = 1; call < 16; ++call) {
        SCOPED_TRACE(call);
        handheldRestartCount();
        handheldFailCall(call, 0x10004405);
        try {
            PalmRecordBuffer buffer;
            proxy_->readFirstModified(buffer);
            proxy_->readFirstInSyncCategory(buffer, 1);
        } catch (const Error&) { // the fault
        }
        proxy_->releaseDatabase();
        handheldMend();
        handheldEndSession();
        walk();
        proxy_->releaseDatabase();
    }
}

} // namespace
} // namespace tsr
