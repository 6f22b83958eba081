#include "foundation/DateTime.h"

#include <sstream>

#include "foundation/TimeStamp.h"
#include "foundation/TimeZone.h"
#include "support/errors.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

TEST(DateTime, TheDefaultIs1800) { EXPECT_EQ(DateTime(), DateTime(1800, 1, 1, 0, 0, 0)); }

TEST(DateTime, HasADateAndATime) {
    const DateTime moment(2002, 2, 6, 12, 34, 56);
    EXPECT_EQ(moment.date(), Date(2002, 2, 6));
    EXPECT_EQ(moment.timeOfDay(), TimeOfDay(12, 34, 56));
    EXPECT_EQ(moment, DateTime(Date(2002, 2, 6), TimeOfDay(12, 34, 56)));
}

TEST(DateTime, ComparesByDateThenByTime) {
    EXPECT_LT(DateTime(2002, 2, 5, 23, 0, 0), DateTime(2002, 2, 6, 1, 0, 0));
    EXPECT_LT(DateTime(2002, 2, 6, 1, 0, 0), DateTime(2002, 2, 6, 1, 0, 1));
    EXPECT_GE(DateTime(2002, 2, 6, 1, 0, 0), DateTime(2002, 2, 6, 1, 0, 0));
}

TEST(DateTime, Subtracts) {
    EXPECT_EQ((DateTime(2002, 2, 6, 1, 0, 0) - DateTime(2002, 2, 5, 23, 0, 0)).seconds(), 7200);
}

TEST(DateTime, ReadsAStampInAZone) {
    EXPECT_EQ(DateTime(TimeStamp(1, 1012998896), TimeZone(3600)), DateTime(2002, 2, 6, 13, 34, 56));
}

TEST(DateTime, ConvertsReadingsToSecondsAndBack) {
    EXPECT_EQ(secondsOfReading(DateTime(1801, 1, 1, 0, 0, 1)), 365 * 86400 + 1);
    EXPECT_EQ(readingFromSeconds(365 * 86400 + 1), DateTime(1801, 1, 1, 0, 0, 1));
    EXPECT_EQ(test::textRaisedBy([] { readingFromSeconds(-1); }),
              "Cannot perform conversion; integer value would have lost it's sign.");
    EXPECT_EQ(test::textRaisedBy([] { readingFromSeconds(9223372036854775807); }),
              "Cannot perform conversion; integer value would have been truncated.");
}

TEST(DateTime, PrintsForLogs) {
    std::ostringstream stream;
    stream << DateTime(2002, 2, 6, 12, 34, 56);
    EXPECT_EQ(stream.str(), "Wed Feb  6 12:34:56 2002");
}

} // namespace
} // namespace tsr
