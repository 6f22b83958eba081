#include "records/NotesJournalRecord.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

using Strings = std::vector<std::string>;

TEST(NotesJournalRecord, GoesBothWays) {
    const NotesItem item{{"#Differences", {"0"}},
                         {"Body", {"Milk\nBread"}},
                         {"Category", {"Home", "", "Shops"}},
                         {"Subject", {"Shopping"}}};
    const NotesJournalRecord record(item, TimeZone());
    EXPECT_EQ(record.subject, "Shopping");
    EXPECT_EQ(record.body, "Milk\nBread");
    EXPECT_EQ(record.categories, (Strings{"Home", "", "Shops"}));
    EXPECT_EQ(record.description(), "Shopping");
    NotesItem sent;
    record.addTo(sent, TimeZone());
    EXPECT_EQ(sent, item);
}

TEST(NotesJournalRecord, NormalizesTheLineEndsOfABodyThatArrives) {
    const NotesJournalRecord record({{"Body", {"a\r\nb\rc"}}, {"Subject", {"a\r\nb"}}}, TimeZone());
    EXPECT_EQ(record.body, "a\nb\nc");
    EXPECT_EQ(record.subject, "a\r\nb"); // one line, and taken as it is
}

TEST(NotesJournalRecord, SendsABodyAsItStands) {
    NotesJournalRecord record;
    record.body = "a\r\nb";
    NotesItem item;
    record.addTo(item, TimeZone());
    EXPECT_EQ(item, (NotesItem{{"#Differences", {"0"}}, {"Body", {"a\r\nb"}}, {"Subject", {""}}}));
}

TEST(NotesJournalRecord, IsEmptyWithoutProperties) {
    for (const NotesItem& item : {NotesItem{}, NotesItem{{"Subject", {}}, {"Body", {}}, {"Category", {}}}}) {
        const NotesJournalRecord record(item, TimeZone());
        EXPECT_EQ(record.subject, "");
        EXPECT_EQ(record.body, "");
        EXPECT_EQ(record.categories, Strings{});
    }
}

} // namespace
} // namespace tsr
