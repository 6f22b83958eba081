#include "foundation/TimeStamp.h"

#include <limits>

#include "foundation/TimeZone.h"
#include "support/errors.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

TEST(TimeStamp, CountsFrom1800Or1970) {
    EXPECT_EQ(TimeStamp().secondsSince1800(), 0);
    EXPECT_EQ(TimeStamp(0, 5364662400).secondsSince1970(), 0); // 62,091 days
    EXPECT_EQ(TimeStamp(1, 7).secondsSince1800(), 5364662407);
    EXPECT_EQ(TimeStamp(1, -1).secondsSince1800(), 5364662399);
    EXPECT_EQ(test::textRaisedBy([] { TimeStamp(2, 0); }), "Invalid argument.");
}

TEST(TimeStamp, HasNoSecondsSince1970Before1970) {
    const TimeStamp stamp(DateTime(1969, 12, 31, 23, 59, 59), TimeZone());
    EXPECT_EQ(test::textRaisedBy([&] { stamp.secondsSince1970(); }),
              "The time stamp value represents a time before the start of UTC.");
    EXPECT_EQ(TimeStamp(DateTime(1970, 1, 1, 0, 0, 0), TimeZone()).secondsSince1970(), 0);
}

TEST(TimeStamp, MovesByIntervals) {
    TimeStamp stamp(1, 100);
    stamp += TimeInterval(5);
    EXPECT_EQ(stamp, TimeStamp(1, 105));
    stamp -= TimeInterval(10);
    EXPECT_EQ(stamp, TimeStamp(1, 95));
    EXPECT_EQ((TimeStamp(1, 95) - TimeStamp(1, 100)).seconds(), -5);
    EXPECT_LT(TimeStamp(1, 95), TimeStamp(1, 100));
}

TEST(TimeStamp, SurvivesHostileCounts) {
    using Limits = std::numeric_limits<std::int64_t>;
    TimeStamp stamp(1, Limits::max());
    stamp += TimeInterval(Limits::max());
    stamp -= TimeInterval(Limits::min());
    EXPECT_EQ((TimeStamp(0, Limits::min()) - TimeStamp(0, 1)).seconds(), Limits::max());
}

} // namespace
} // namespace tsr
