#include "foundation/messages.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

TEST(DescribeSystemError, GivesTheSystemsTextWithItsLineEnd) {
    EXPECT_EQ(describeSystemError(6), "Invalid handle.\r\n");
}

// A text with room for values, which nobody has.
TEST(DescribeSystemError, LeavesThePlacesForValues) {
    EXPECT_NE(describeSystemError(193).find("%1"), std::string::npos); // ERROR_BAD_EXE_FORMAT
}

} // namespace
} // namespace tsr
