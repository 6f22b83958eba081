#include "foundation/messages.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

TEST(DescribeSystemError, GivesTheSystemsText) {
    EXPECT_EQ(describeSystemError(2), "No such file or directory");
}

} // namespace
} // namespace tsr
