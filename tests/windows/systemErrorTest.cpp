#include "foundation/messages.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

TEST(DescribeSystemError, GivesTheSystemsTextWithItsLineEnd) {
    EXPECT_EQ(describeSystemError(6), "Invalid handle.\r\n");
}

} // namespace
} // namespace tsr
