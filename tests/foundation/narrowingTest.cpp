#include "foundation/narrowing.h"

#include "support/errors.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

const char truncated[] = "Cannot perform conversion; integer value would have been truncated.";
const char signLost[] = "Cannot perform conversion; integer value would have lost it's sign.";

TEST(NarrowToInt, TakesTheRangeOfTheTarget) {
    EXPECT_EQ(narrowToInt(2147483647), 2147483647);
    EXPECT_EQ(narrowToInt(-2147483648LL), -2147483647 - 1);
    EXPECT_EQ(test::textRaisedBy([] { narrowToInt(2147483648LL); }), truncated);
    EXPECT_EQ(test::textRaisedBy([] { narrowToInt(-2147483649LL); }), truncated);
}

TEST(NarrowNonNegative, TakesNoSign) {
    EXPECT_EQ(narrowNonNegative(0), 0);
    EXPECT_EQ(narrowNonNegative(2147483647), 2147483647);
    EXPECT_EQ(test::textRaisedBy([] { narrowNonNegative(-1); }), signLost);
    EXPECT_EQ(test::textRaisedBy([] { narrowNonNegative(-4294967296LL); }), signLost);
    EXPECT_EQ(test::textRaisedBy([] { narrowNonNegative(2147483648LL); }), truncated);
}

TEST(NarrowToUnsignedWide, TakesNoSign) {
    EXPECT_EQ(narrowToUnsignedWide(9223372036854775807LL), 9223372036854775807uLL);
    EXPECT_EQ(test::textRaisedBy([] { narrowToUnsignedWide(-1); }), signLost);
}

TEST(NarrowToUnsigned, TakesTheRangeOfTheTarget) {
    EXPECT_EQ(narrowToUnsigned(4294967295u), 4294967295u);
    EXPECT_EQ(test::textRaisedBy([] { narrowToUnsigned(4294967296u); }), truncated);
}

} // namespace
} // namespace tsr
