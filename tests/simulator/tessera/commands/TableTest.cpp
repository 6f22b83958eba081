#include "tessera/commands/Table.h"

#include <sstream>

#include <gtest/gtest.h>

namespace tsr {
namespace {

std::string text(const Table& table) {
    std::ostringstream stream;
    stream << table;
    return stream.str();
}

TEST(Table, MakesItsColumnsAsWideAsTheyNeedToBe) {
    Table table({"NAME", "ZONE"});
    table.add({"M\xC3\xBCller", "UTC"}); // six characters in seven bytes
    table.add({"Al", "Europe/Berlin"});
    EXPECT_EQ(text(table), "NAME    ZONE\nM\xC3\xBCller  UTC\nAl      Europe/Berlin\n");
}

TEST(Table, ShowsNothingThatActsOnATerminal) {
    EXPECT_EQ(text(Table({"a\x1B[2Jb\n", "\xC2\x9B"
                                         "c"})),
              "a?[2Jb?  ?c\n");
}

} // namespace
} // namespace tsr
