#include "foundation/NullLogStream.h"

#include <iomanip>

#include "foundation/Tag.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

TEST(NullLogStream, DropsTextTagsAndValues) {
    NullLogStream log;
    log << "#t There are $n items" << Tag('n') << 3 << std::setw(8) << std::hex << 255 << '\n' << std::flush;
    EXPECT_TRUE(log.good()); // dropping is no failure
}

TEST(NullLogStreambuf, AcceptsEveryCharacter) {
    NullLogStreambuf buffer;
    for (int c = 0; c <= 255; ++c) EXPECT_NE(buffer.sputc(static_cast<char>(c)), EOF) << c;
    EXPECT_EQ(buffer.sputn("text", 4), 4);
}

} // namespace
} // namespace tsr
