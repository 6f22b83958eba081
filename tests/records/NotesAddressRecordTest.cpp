#include "records/NotesAddressRecord.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

using Strings = std::vector<std::string>;

// A contact that has everything, listed.
const NotesItem full{{"Address", {"A"}},
                     {"Body", {"N\nn"}},
                     {"Category", {"Home", "", "Shops"}},
                     {"City", {"c"}},
                     {"Company", {"C"}},
                     {"Country", {"Y"}},
                     {"Custom1", {"1"}},
                     {"Custom2", {"2"}},
                     {"Custom3", {"3"}},
                     {"Custom4", {"4"}},
                     {"Email", {"e"}},
                     {"Fax", {"f"}},
                     {"FirstName", {"F"}},
                     {"Home", {"h"}},
                     {"LastName", {"L"}},
                     {"Main", {"m"}},
                     {"Mobile", {"M"}},
                     {"Other", {"o"}},
                     {"Pager", {"p"}},
                     {"PalmListed", {"FWHmOEPM"}},
                     {"PalmPreferred", {"M"}},
                     {"State", {"S"}},
                     {"Title", {"T", "t"}},
                     {"Work", {"w", "W"}},
                     {"Zip", {"Z"}}};

NotesItem sent(const NotesAddressRecord& record) {
    NotesItem item;
    record.addTo(item, TimeZone());
    return item;
}

TEST(NotesAddressRecord, GoesBothWays) {
    const NotesAddressRecord record(full, TimeZone());
    EXPECT_EQ(record.address, "A");
    EXPECT_EQ(record.city, "c");
    EXPECT_EQ(record.company, "C");
    EXPECT_EQ(record.country, "Y");
    EXPECT_EQ(record.custom1, "1");
    EXPECT_EQ(record.custom2, "2");
    EXPECT_EQ(record.custom3, "3");
    EXPECT_EQ(record.custom4, "4");
    EXPECT_EQ(record.firstName, "F");
    EXPECT_EQ(record.lastName, "L");
    EXPECT_EQ(record.body, "N\nn");
    EXPECT_EQ(record.state, "S");
    EXPECT_EQ(record.zip, "Z");
    EXPECT_EQ(record.title, (Strings{"T", "t"}));
    EXPECT_EQ(record.phones[WorkPhone], (Strings{"w", "W"}));
    EXPECT_EQ(record.phones[HomePhone], Strings{"h"});
    EXPECT_EQ(record.phones[FaxPhone], Strings{"f"});
    EXPECT_EQ(record.phones[OtherPhone], Strings{"o"});
    EXPECT_EQ(record.phones[EmailPhone], Strings{"e"});
    EXPECT_EQ(record.phones[MainPhone], Strings{"m"});
    EXPECT_EQ(record.phones[PagerPhone], Strings{"p"});
    EXPECT_EQ(record.phones[MobilePhone], Strings{"M"});
    EXPECT_EQ(record.palmListed, "FWHmOEPM");
    EXPECT_EQ(record.palmPreferred, "M");
    EXPECT_EQ(record.categories, (Strings{"Home", "", "Shops"}));
    EXPECT_EQ(record.description(), "L, F");
    EXPECT_EQ(sent(record), full); // without "#Differences"
}

TEST(NotesAddressRecord, SendsEmptyTextsAndNoEmptyLists) {
    EXPECT_EQ(sent(NotesAddressRecord()), (NotesItem{{"Address", {""}},
                                                     {"Body", {""}},
                                                     {"City", {""}},
                                                     {"Company", {""}},
                                                     {"Country", {""}},
                                                     {"Custom1", {""}},
                                                     {"Custom2", {""}},
                                                     {"Custom3", {""}},
                                                     {"Custom4", {""}},
                                                     {"FirstName", {""}},
                                                     {"LastName", {""}},
                                                     {"PalmListed", {""}},
                                                     {"PalmPreferred", {""}},
                                                     {"State", {""}},
                                                     {"Zip", {""}}}));
    NotesAddressRecord record;
    record.title = {"", "T", ""};
    record.phones[WorkPhone] = {"", "1"};
    record.phones[HomePhone] = {""};
    record.palmListed = "WH";
    const NotesItem item = sent(record);
    EXPECT_EQ(item.at("Title"), Strings{"T"});
    EXPECT_EQ(item.at("Work"), Strings{"1"});
    EXPECT_EQ(item.count("Home"), 0u);
}

TEST(NotesAddressRecord, SendsTheKindsThatAreListedAlone) {
    const std::pair<const char*, const char*> rows[] = {
        {"E", "Email"},  {"F", "Fax"},   {"H", "Home"},  {"m", "Main"},
        {"M", "Mobile"}, {"O", "Other"}, {"P", "Pager"}, {"W", "Work"},
    };
    for (const auto& [listed, name] : rows) {
        SCOPED_TRACE(name);
        NotesAddressRecord record(full, TimeZone());
        record.palmListed = listed;
        const NotesItem item = sent(record);
        for (const auto& [letter, kind] : rows) EXPECT_EQ(item.count(kind), kind == name ? 1u : 0u) << kind;
        EXPECT_EQ(item.at(name), full.at(name));
    }
}

TEST(NotesAddressRecord, NormalizesLineEndsAndDropsEmptyValues) {
    const NotesAddressRecord record({{"LastName", {"a\r\nb\rc", "second"}},
                                     {"Body", {"a\r\n"}},
                                     {"Title", {"", "a\r\nb", ""}},
                                     {"Pager", {"\r", "", "1"}},
                                     {"PalmListed", {"W\r\n"}},
                                     {"PalmPreferred", {"\r"}},
                                     {"Category", {"a\r\n"}}},
                                    TimeZone());
    EXPECT_EQ(record.lastName, "a\nb\nc");
    EXPECT_EQ(record.body, "a\n");
    EXPECT_EQ(record.title, Strings{"a\nb"});
    EXPECT_EQ(record.phones[PagerPhone], (Strings{"\n", "1"}));
    EXPECT_EQ(record.palmListed, "W\r\n"); // as they are
    EXPECT_EQ(record.palmPreferred, "\r");
    EXPECT_EQ(record.categories, Strings{"a\r\n"});
}

TEST(NotesAddressRecord, IsEmptyWithoutProperties) {
    for (const NotesItem& item :
         {NotesItem{},
          NotesItem{{"LastName", {}}, {"Title", {}}, {"Work", {}}, {"PalmListed", {}}, {"Category", {}}}}) {
        const NotesAddressRecord record(item, TimeZone());
        EXPECT_EQ(sent(record), sent(NotesAddressRecord()));
        EXPECT_EQ(record.description(), ", ");
    }
}

} // namespace
} // namespace tsr
