#include "records/PalmDummyRecord.h"

#include "support/errors.h"

#include "gmock/gmock.h"
#include "gtest/gtest.h"

namespace tsr {
namespace {

using test::textRaisedBy;
using testing::MatchesRegex;

TEST(PalmDummyRecord, RefusesWhateverItIsAskedFor) {
    const PalmDummyRecord record;
    PalmRecordBuffer buffer;
    const auto refused = MatchesRegex("Internal error occured at line [0-9]+ in PalmDummyRec\\.");
    EXPECT_THAT(textRaisedBy([&] { record.category(); }), refused);
    EXPECT_THAT(textRaisedBy([&] { record.description(); }), refused);
    EXPECT_THAT(textRaisedBy([&] { record.write(buffer); }), refused);
    EXPECT_TRUE(buffer.isEmpty());
}

TEST(PalmDummyRecord, HasTheRestOfARecord) {
    const PalmDummyRecord record;
    EXPECT_FALSE(record.archived());
    EXPECT_EQ(record.crc(), 0u);
    EXPECT_EQ(record.syncEntryTag(), 0);
    EXPECT_EQ(record.syncEntryUserData(), 0);
}

} // namespace
} // namespace tsr
