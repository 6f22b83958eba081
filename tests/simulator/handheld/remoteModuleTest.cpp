#include "handheld/remoteModule.h"

#include <gtest/gtest.h>

#include "handheld/CopyPass.h"
#include "support/bytes.h"

namespace tsr {
namespace {

using test::bytes;
using Bytes = std::vector<std::uint8_t>;

class RemoteModuleTest : public testing::Test {
protected:
    RemoteModuleTest()
        : application_(handheld_.create("MemoDB", 0, 0)), sync_(handheld_.create("MemoSync", 0, 0)) {}

    RemoteModuleAnswer run(const std::string& strings = std::string("6\0000\0000\000MemoDB\000MemoSync\000",
                                                                    22)) {
        return runRemoteModule(handheld_, 0x8000, Bytes(strings.begin(), strings.end()));
    }

    std::string answer() {
        const RemoteModuleAnswer given = run();
        EXPECT_EQ(given.code, 0U);
        std::string text(given.result.begin(), given.result.end());
        for (char& c : text) {
            if (c == 0) c = '|';
        }
        return text;
    }

    Handheld handheld_;
    HandheldDatabase& application_;
    HandheldDatabase& sync_;
};

TEST_F(RemoteModuleTest, IsFoundByItsCodes) {
    EXPECT_TRUE(isRemoteModule(0x54535241, 0x6170706C));
    EXPECT_FALSE(isRemoteModule(0x54535241, 0x44415441));
    EXPECT_FALSE(isRemoteModule(0x6D656D6F, 0x6170706C));
}

TEST_F(RemoteModuleTest, RefusesWhatItDoesNotKnow) {
    const std::string rows[] = {
        "",
        std::string("6\0000\0000\000MemoDB\000", 13),             // four strings
        std::string("6\0000\0000\000MemoDB\000MemoSync", 21),     // the last without its NUL
        std::string("7\0000\0000\000MemoDB\000MemoSync\000", 22), // another function
        std::string("6\0000\0000\000MemoXX\000MemoSync\000", 22), // no such database
    };
    for (const std::string& row : rows) {
        SCOPED_TRACE(row);
        EXPECT_NE(run(row).code, 0U);
        EXPECT_TRUE(run(row).result.empty());
    }
    EXPECT_NE(runRemoteModule(handheld_, 1, {}).code, 0U);
}

TEST_F(RemoteModuleTest, IsDoneAtOnceWithNothingToCopy) { EXPECT_EQ(answer(), "0|17|"); }

// A pending memo "Hi" of category 5, and a block whose bytes 4 to 6 wait for its id.
TEST_F(RemoteModuleTest, CopiesARecordAndFillsItsHole) {
    application_.putRecord({0x41, 0, 0, {}});
    sync_.putRecord({0x10, 0, 2, bytes("00 00 00 09 00 00 00 77")});
    sync_.putRecord({0x11, 0, 3, bytes("00 05 48 69 00")});
    sync_.putRecord({0x12, 0, 6, bytes("00 00 00 11 00 00 10 00 04")}); // pending 0x11, block 0x10, offset 4
    EXPECT_EQ(answer(), "0|17|");
    EXPECT_EQ(*application_.records().find(0x42), (HandheldRecord{0x42, 0, 5, bytes("48 69 00")}));
    EXPECT_EQ(sync_.records().all(),
              (std::vector<HandheldRecord>{{0x10, 0, 2, bytes("00 00 00 09 00 00 42 77")}}));
}

TEST_F(RemoteModuleTest, KeepsARecordSecret) {
    sync_.putRecord({0x11, HandheldRecord::secret, 3, bytes("00 05 48 69 00")});
    EXPECT_EQ(answer(), "0|17|");
    EXPECT_EQ(*application_.records().find(1),
              (HandheldRecord{1, HandheldRecord::secret, 5, bytes("48 69 00")}));
}

TEST_F(RemoteModuleTest, TakesSeveralPasses) {
    const std::size_t count = 2 * CopyPass::recordsInOnePass + 1;
    sync_.putRecord({1, 0, 2, Bytes(4 + 3 * count)});
    Bytes fixups = {0};
    for (std::size_t i = 0; i < count; ++i) {
        const auto id = static_cast<std::uint32_t>(2 + i);
        sync_.putRecord({id, 0, 3, {0, 0, static_cast<std::uint8_t>(i)}});
        const std::size_t offset = 4 + 3 * i;
        for (std::size_t byte : {std::size_t{0}, std::size_t{id} >> 8, std::size_t{id}, std::size_t{0},
                                 std::size_t{0}, std::size_t{1}, offset >> 8, offset}) {
            fixups.push_back(static_cast<std::uint8_t>(byte));
        }
    }
    sync_.putRecord({0x2000, 0, 6, fixups});
    EXPECT_EQ(answer(), "0|0|");
    EXPECT_EQ(application_.records().size(), CopyPass::recordsInOnePass);
    EXPECT_EQ(sync_.records().find(0x2000)->data.size(), 1 + 8 * (CopyPass::recordsInOnePass + 1));
    EXPECT_EQ(answer(), "0|0|");
    EXPECT_EQ(answer(), "0|17|");
    EXPECT_EQ(application_.records().size(), count);
    ASSERT_EQ(sync_.records().size(), 1U);
    const Bytes& block = sync_.records().find(1)->data;
    for (std::size_t i = 0; i < count; ++i) { // ids are given from 1 on
        EXPECT_EQ(block[4 + 3 * i + 1] << 8 | block[4 + 3 * i + 2], static_cast<int>(i + 1));
    }
}

TEST_F(RemoteModuleTest, ExactlyAPassIsDoneInOne) {
    for (std::uint32_t i = 1; i <= CopyPass::recordsInOnePass; ++i) sync_.putRecord({i, 0, 3, {0, 0}});
    EXPECT_EQ(answer(), "0|17|");
    EXPECT_EQ(application_.records().size(), CopyPass::recordsInOnePass);
}

TEST_F(RemoteModuleTest, DropsFixupsOfRecordsThatNeverWere) {
    sync_.putRecord({1, 0, 2, Bytes(8)});
    sync_.putRecord({2, 0, 6, bytes("00 00 00 63 00 00 01 00 04")});
    EXPECT_EQ(answer(), "0|17|");
    EXPECT_EQ(sync_.records().all(), (std::vector<HandheldRecord>{{1, 0, 2, Bytes(8)}}));
}

TEST_F(RemoteModuleTest, TouchesNothingForADamagedFixup) {
    const char* const rows[] = {
        "00 00 00 03",                // cut
        "00 00 00 03 00 00 01 00 06", // a hole of 3 bytes at 6 in a block of 8
        "00 00 00 03 00 00 01 FF FF", // far outside
        "00 00 00 03 00 00 99 00 04", // no such block
    };
    for (const char* row : rows) {
        SCOPED_TRACE(row);
        Handheld handheld;
        HandheldDatabase& application = handheld.create("MemoDB", 0, 0);
        HandheldDatabase& sync = handheld.create("MemoSync", 0, 0);
        sync.putRecord({1, 0, 2, Bytes(8)});
        sync.putRecord({2, 0, 6, bytes(row)});
        sync.putRecord({3, 0, 3, {0, 0, 'a'}});
        const HandheldDatabase before = sync;
        CopyPass pass(application, sync);
        EXPECT_FALSE(pass.run());
        EXPECT_EQ(pass.unusableRecord(), 2U);
        EXPECT_EQ(application.records().size(), 0U);
        EXPECT_EQ(sync, before);
    }
}

TEST_F(RemoteModuleTest, StopsAtADamagedPendingRecord) {
    sync_.putRecord({1, 0, 2, Bytes(7)});
    sync_.putRecord({2, 0, 3, {0, 0, 'a'}});
    sync_.putRecord({3, 0, 3, {0}}); // no category
    sync_.putRecord({4, 0, 6, bytes("00 00 00 02 00 00 01 00 04")});
    EXPECT_EQ(answer(), "1|3|");
    EXPECT_EQ(application_.records().size(), 1U);
    EXPECT_EQ(sync_.records().find(1)->data, bytes("00 00 00 00 00 00 01")); // what was copied is known
    sync_.writeRecord(3, 3, false, {0, 16});                                 // no such category
    EXPECT_EQ(answer(), "1|3|");
}

} // namespace
} // namespace tsr
