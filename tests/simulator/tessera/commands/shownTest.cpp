#include "tessera/commands/shown.h"

#include <gtest/gtest.h>

namespace tsr {
namespace {

TEST(Shown, LeavesNothingThatActsOnATerminal) {
    const std::string text =
        "M\xC3\xBCller\n\t\x1B[2J\r\x7F\xC2\x9B"; // the last is an escape in one character
    EXPECT_EQ(shownLine(text), "M\xC3\xBCller???[2J???");
    EXPECT_EQ(shownText(text), "M\xC3\xBCller\n\t?[2J???");
}

} // namespace
} // namespace tsr
