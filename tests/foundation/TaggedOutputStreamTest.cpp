#include "foundation/TaggedOutputStream.h"

#include <string>

#include "foundation/Tag.h"
#include "support/environment.h"
#include "support/testClock.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

TEST(TaggedOutputStream, SubstitutesAtTheEndOfTheLine) {
    std::ostringstream target;
    TaggedOutputStream stream(target.rdbuf());
    stream << "There are $n $i to send" << Tag('n') << 3 << Tag('i') << "items";
    EXPECT_EQ(target.str(), "");
    stream << '\n';
    EXPECT_EQ(target.str(), "There are 3 items to send\n");
}

TEST(TaggedOutputStream, ReadsNamesUpToTheFirstOtherCharacter) {
    const auto line = [](const std::string& text) {
        TaggedOutputStringStream stream;
        stream << text << Tag("s") << "S" << Tag("id") << 5 << Tag("uid") << 77;
        return stream.str();
    };
    EXPECT_EQ(line("'$s'."), "'S'.");
    EXPECT_EQ(line("id=$id"), "id=5");
    EXPECT_EQ(line("$uid="), "77=");
    EXPECT_EQ(line("$s$id"), "S5");          // a mark ends a name
    EXPECT_EQ(line("$s and $s"), "S and S"); // one value for both
    EXPECT_EQ(line("$x"), "???");            // no value
    EXPECT_EQ(line("$sid"), "???");          // the longest run is the name
    EXPECT_EQ(line("100$"), "100???");       // an empty name has no value
    EXPECT_EQ(line("#x!#"), "!");            // an unknown variable vanishes
    EXPECT_EQ(line("nothing"), "nothing");
}

TEST(TaggedOutputStream, DoesNotSearchValues) {
    TaggedOutputStringStream stream;
    stream << "[$a]" << Tag('a') << "$a #t";
    EXPECT_EQ(stream.str(), "[$a #t]");
}

TEST(TaggedOutputStream, KeepsValuesForLaterLines) {
    TaggedOutputStringStream stream;
    stream << "$n" << Tag('n') << 1 << '\n'
           << "$n again\n"
           << "$n" << Tag('n') << 2 << '\n';
    EXPECT_EQ(stream.str(), "1\n1 again\n2\n");
}

TEST(TaggedOutputStream, TakesAnEmptyValue) {
    TaggedOutputStringStream stream;
    stream << "[$n]" << Tag('n') << '\n';
    EXPECT_EQ(stream.str(), "[]\n");
}

TEST(TaggedOutputStream, EndsTheLineInsideAValueToo) {
    TaggedOutputStringStream stream;
    stream << "<$s>" << Tag('s') << "one\ntwo";
    EXPECT_EQ(stream.str(), "<one>\ntwo");
}

TEST(TaggedOutputStream, EndsTheTextWithoutALineFeedAtTheByteOne) {
    TaggedOutputStringStream stream;
    stream << "a$n" << Tag('n') << 1 << '\1' << "b\n";
    EXPECT_EQ(stream.str(), "a1b\n");
}

TEST(TaggedOutputStream, ASecondStrAddsNothing) {
    TaggedOutputStringStream stream;
    stream << "text";
    EXPECT_EQ(stream.str(), "text");
    EXPECT_EQ(stream.str(), "text");
}

TEST(TaggedOutputStream, PutsTheTimeOfDayForT) {
    const test::ScopedVariable zone("TZ", "CET-1");
    test::setClock(1012998896); // 2002-02-06 12:34:56 UTC
    TaggedOutputStringStream stream;
    stream << "#t Sync started, #t\n";
    EXPECT_EQ(stream.str(), "13:34:56 Sync started, 13:34:56\n");
}

TEST(TaggedOutputStream, WorksTheTimeOutAsTheLineEnds) {
    const test::ScopedVariable zone("TZ", "UTC0");
    test::setClock(0);
    TaggedOutputStringStream stream;
    stream << "#t";
    test::setClock(1);
    EXPECT_EQ(stream.str(), "00:00:01");
}

TEST(TaggedOutputStream, SyncReachesTheTarget) {
    struct CountingBuffer : std::stringbuf {
        int syncs = 0;
        int sync() override {
            ++syncs;
            return 0;
        }
    } target;
    TaggedOutputStream stream(&target);
    stream << "line" << std::flush;
    EXPECT_EQ(target.syncs, 1);
}

TEST(Tag, VanishesOnAStreamThatIsNotTagged) {
    std::ostringstream stream;
    stream << "$n" << Tag('n') << 3;
    EXPECT_EQ(stream.str(), "$n3");
}

} // namespace
} // namespace tsr
