#include "records/NotesToDoRecord.h"

#include "support/errors.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

using test::textRaisedBy;
using Strings = std::vector<std::string>;

// An item that lacks nothing, with some of its properties in place of the usual ones.
NotesItem itemWith(const NotesItem& properties) {
    NotesItem item{{"0037001F", {"Lunch"}}, {"00170041", {"666F6f64"}}, {"00260003", {"1"}},
                   {"00040002", {"0"}},     {"410F0002", {"0"}},        {"41050040", {""}}};
    for (const auto& [name, values] : properties) item[name] = values;
    return item;
}

NotesToDoRecord recordWith(const NotesItem& properties) {
    return NotesToDoRecord(itemWith(properties), TimeZone());
}

NotesItem sent(const NotesToDoRecord& record) {
    NotesItem item;
    record.addTo(item, TimeZone(7200)); // days are in UTC, whatever the user's zone
    return item;
}

TEST(NotesToDoRecord, TakesItsProperties) {
    const NotesToDoRecord record = recordWith({{"41050040", {"289267200"}}, // 3348 days after 1993-01-01
                                               {"410F0002", {"1"}},
                                               {"Category", {"Home", "", "Shops"}}});
    EXPECT_EQ(record.subject, "Lunch");
    EXPECT_EQ(record.description(), "Lunch");
    EXPECT_EQ(record.body, "food");
    EXPECT_TRUE(record.hasDueDate);
    EXPECT_EQ(record.dueDate, Date(2002, 3, 3));
    EXPECT_TRUE(record.completed);
    EXPECT_EQ(record.priority, 1);
    EXPECT_FALSE(record.isPrivate);
    EXPECT_EQ(record.categories, (Strings{"Home", "", "Shops"}));
}

TEST(NotesToDoRecord, HasDefaultsAtFirst) {
    const NotesToDoRecord record;
    EXPECT_FALSE(record.hasDueDate);
    EXPECT_EQ(record.dueDate, Date(1970, 1, 1));
    EXPECT_FALSE(record.completed);
    EXPECT_EQ(record.priority, 2);
    EXPECT_FALSE(record.isPrivate);
}

TEST(NotesToDoRecord, SendsItsProperties) {
    NotesToDoRecord record;
    record.subject = "Lunch";
    record.body = "food\r\n";
    EXPECT_EQ(sent(record), (NotesItem{{"#Differences", {"0"}},
                                       {"0037001F", {"Lunch"}},
                                       {"00170041", {"food\r\n"}}, // as it stands
                                       {"00260003", {"2"}},
                                       {"410F0002", {"0"}}}));
    record.hasDueDate = true;
    record.dueDate = Date(2002, 3, 4);
    record.completed = true;
    record.priority = 99;
    record.isPrivate = true;
    record.categories = {"Home", "Shops"};
    EXPECT_EQ(sent(record), (NotesItem{{"#Differences", {"0"}},
                                       {"0037001F", {"Lunch"}},
                                       {"00170041", {"food\r\n"}},
                                       {"00260003", {"99"}},
                                       {"41050040", {"289353600"}}, // 3349 days of 86,400 seconds
                                       {"410F0002", {"1"}},
                                       {"00040002", {"3"}},
                                       {"Category", {"Home", "Shops"}}}));
}

TEST(NotesToDoRecord, DecodesTheBody) {
    const std::pair<const char*, std::string> rows[] = {
        {"", ""},
        {"666F6F64", "food"},
        {"610D0A620D630A64", "a\nb\nc\nd"},
        {"E4ff", "\xE4\xFF"},
        {"610062", std::string("a\0b", 3)}, // taken as it is
    };
    for (const auto& [digits, body] : rows) {
        SCOPED_TRACE(digits);
        EXPECT_EQ(recordWith({{"00170041", {digits}}}).body, body);
    }
}

TEST(NotesToDoRecord, TakesTheSubjectAsItIs) {
    EXPECT_EQ(recordWith({{"0037001F", {"a\r\nb", "c"}}}).subject, "a\r\nb"); // its first value
    EXPECT_EQ(recordWith({{"0037001F", {}}}).subject, "");
}

TEST(NotesToDoRecord, TakesTheDayOfADueDate) {
    const struct {
        Strings values;
        bool hasDueDate;
        Date dueDate;
    } rows[] = {
        {{}, false, Date(1970, 1, 1)},
        {{""}, false, Date(1970, 1, 1)},
        {{"0"}, false, Date(1970, 1, 1)},
        {{"000"}, false, Date(1970, 1, 1)},
        {{"4294967296"}, false, Date(1970, 1, 1)}, // wraps to 0
        {{"1"}, true, Date(1993, 1, 1)},
        {{"86399"}, true, Date(1993, 1, 1)}, // the time of day is dropped
        {{"86400"}, true, Date(1993, 1, 2)},
        {{"289353600"}, true, Date(2002, 3, 4)},
        {{"4294967295"}, true, Date(1992, 12, 31)}, // the shift to 1970 wraps
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.values.empty() ? "none" : row.values.front());
        const NotesToDoRecord record = recordWith({{"41050040", row.values}});
        EXPECT_EQ(record.hasDueDate, row.hasDueDate);
        EXPECT_EQ(record.dueDate, row.dueDate);
        EXPECT_EQ(sent(record).count("41050040"), row.hasDueDate ? 1u : 0u);
    }
}

TEST(NotesToDoRecord, RefusesToSendADueDateThatDoesNotFit) {
    NotesToDoRecord record;
    record.hasDueDate = true;
    record.dueDate = Date(2106, 2, 7); // 49,710 days after 1970-01-01: 4,294,944,000 seconds
    EXPECT_EQ(sent(record).at("41050040"), Strings{"3569097600"});
    record.dueDate = Date(2106, 2, 8);
    EXPECT_EQ(textRaisedBy([&] { sent(record); }),
              "Cannot perform conversion; integer value would have been truncated.");
    record.dueDate = Date(1969, 12, 31);
    EXPECT_EQ(textRaisedBy([&] { sent(record); }),
              "The time stamp value represents a time before the start of UTC.");
}

TEST(NotesToDoRecord, IsPrivateUnlessToldOtherwise) {
    const std::pair<Strings, bool> rows[] = {
        {{"0"}, false}, {{"3"}, true}, {{"1"}, true}, {{""}, true}, {{}, true}, {{"00"}, true},
    };
    for (const auto& [values, isPrivate] : rows) {
        SCOPED_TRACE(values.empty() ? "none" : values.front());
        const NotesToDoRecord record = recordWith({{"00040002", values}});
        EXPECT_EQ(record.isPrivate, isPrivate);
        const NotesItem item = sent(record);
        EXPECT_EQ(item.count("00040002") == 1 ? item.at("00040002") : Strings{},
                  isPrivate ? Strings{"3"} : Strings{});
    }
    NotesItem item = itemWith({});
    item.erase("00040002");
    EXPECT_TRUE(NotesToDoRecord(item, TimeZone()).isPrivate);
}

TEST(NotesToDoRecord, IsCompletedByOneExactly) {
    const std::pair<Strings, bool> rows[] = {
        {{"1"}, true}, {{"0"}, false}, {{""}, false}, {{}, false}, {{"01"}, false}, {{"true"}, false},
    };
    for (const auto& [values, completed] : rows) {
        SCOPED_TRACE(values.empty() ? "none" : values.front());
        EXPECT_EQ(recordWith({{"410F0002", values}}).completed, completed);
    }
}

TEST(NotesToDoRecord, TakesAnyPriority) {
    const std::pair<const char*, std::int32_t> rows[] = {
        {"0", 0}, {"1", 1}, {"99", 99}, {"007", 7}, {"4294967295", -1}, {"4294967297", 1},
    };
    for (const auto& [text, priority] : rows) {
        SCOPED_TRACE(text);
        EXPECT_EQ(recordWith({{"00260003", {text}}}).priority, priority);
    }
}

TEST(NotesToDoRecord, RefusesBadProperties) {
    const struct {
        NotesItem properties;
        const char* text;
    } rows[] = {
        {{{"00260003", {}}}, "Cannot convert string '' to unsigned."},
        {{{"00260003", {""}}}, "Cannot convert string '' to unsigned."},
        {{{"00260003", {"high"}}}, "Cannot convert string 'high' to unsigned."},
        {{{"00260003", {"-1"}}}, "Cannot convert string '-1' to unsigned."},
        {{{"41050040", {"x"}}}, "Cannot convert string 'x' to unsigned."},
        {{{"00170041", {"666"}}},
         "Cannot convert hexadecimal string to binary; the length (3) must be even."},
        {{{"00170041", {"6g"}}}, "The character 'g' is not valid in a hexadecimal string."},
        {{{"Recurs", {"1"}}},
         "Cannot replicate todo item 'Lunch' : repeating todo items are not supported in this release."},
        {{{"Recurs", {" "}}},
         "Cannot replicate todo item 'Lunch' : repeating todo items are not supported in this release."},
        // The first that is wrong is told: body, due date, priority, and last that the task repeats.
        {{{"00170041", {"6"}}, {"41050040", {"x"}}},
         "Cannot convert hexadecimal string to binary; the length (1) must be even."},
        {{{"41050040", {"x"}}, {"00260003", {"y"}}}, "Cannot convert string 'x' to unsigned."},
        {{{"00260003", {"y"}}, {"Recurs", {"1"}}}, "Cannot convert string 'y' to unsigned."},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        EXPECT_EQ(textRaisedBy([&] { recordWith(row.properties); }), row.text);
    }
    EXPECT_EQ(textRaisedBy([] { NotesToDoRecord(NotesItem(), TimeZone()); }),
              "Cannot convert string '' to unsigned.");
}

TEST(NotesToDoRecord, TakesATaskWhoseRepeatIsEmpty) {
    EXPECT_EQ(recordWith({{"Recurs", {""}}}).subject, "Lunch");
    EXPECT_EQ(recordWith({{"Recurs", {}}}).subject, "Lunch");
    EXPECT_EQ(sent(recordWith({{"Recurs", {""}}})).count("Recurs"), 0u);
}

} // namespace
} // namespace tsr
