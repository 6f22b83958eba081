#include "foundation/fileVersion.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

TEST(FileVersionText, IsThatOfTheProjectForTheConduit) {
    EXPECT_EQ(fileVersionText("TsrConduit.dll"), "2.4.2.0");
}

TEST(FileVersionText, HasQuestionMarksForOthers) {
    EXPECT_EQ(fileVersionText("messages.txt"), "?.?.?.?");
    EXPECT_EQ(fileVersionText(""), "?.?.?.?");
}

} // namespace
} // namespace tsr
