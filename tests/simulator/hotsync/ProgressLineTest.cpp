#include "hotsync/ProgressLine.h"

#include <sstream>

#include "gtest/gtest.h"

namespace tsr {
namespace {

TEST(ProgressLine, IsWrittenAnewOnATerminal) {
    std::ostringstream out;
    ProgressLine line(out, true);
    line.show("abc");
    EXPECT_EQ(out.str(), "  abc");
    line.show("d"); // five columns are blanked before it
    EXPECT_EQ(out.str(), "  abc\r     \r  d");
    line.clear();
    EXPECT_EQ(out.str(), "  abc\r     \r  d\r   \r");
    line.clear(); // nothing is there any more
    EXPECT_EQ(out.str(), "  abc\r     \r  d\r   \r");
}

TEST(ProgressLine, IsALineForEachTextElsewhere) {
    std::ostringstream out;
    ProgressLine line(out, false);
    line.show("abc");
    line.show("d");
    line.clear();
    EXPECT_EQ(out.str(), "  abc\n  d\n");
}

} // namespace
} // namespace tsr
