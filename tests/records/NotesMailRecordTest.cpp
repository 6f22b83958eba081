#include "records/NotesMailRecord.h"

#include "support/errors.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

using test::textRaisedBy;
using Strings = std::vector<std::string>;

const DateTime firstDate(1970, 1, 1, 0, 0, 0);

// An item that lacks nothing, with some of its properties in place of the usual ones. Its date is 2002-02-06
// 12:34:56 UTC.
NotesItem itemWith(const NotesItem& properties) {
    NotesItem item{{"Bcc", {"d"}},
                   {"Body", {"Hi\r\n"}},
                   {"Cc", {"c"}},
                   {"From", {"a"}},
                   {"Importance", {"1"}},
                   {"NoticeBody", {"n"}},
                   {"ReplyTo", {"e"}},
                   {"Subject", {"Lunch"}},
                   {"To", {"b"}},
                   {"UNID", {"0000000000000000000000000000000a"}},
                   {"#ClassName", {"Inbox"}},
                   {"Date", {"287152496"}},
                   {"Unread", {"1"}}};
    for (const auto& [name, values] : properties) item[name] = values;
    return item;
}

NotesMailRecord recordWith(const NotesItem& properties, const TimeZone& zone = TimeZone()) {
    return NotesMailRecord(itemWith(properties), zone);
}

TEST(NotesMailRecord, TakesItsProperties) {
    const NotesMailRecord record = recordWith({});
    EXPECT_EQ(record.bcc, "d");
    EXPECT_EQ(record.body, "Hi\n");
    EXPECT_EQ(record.cc, "c");
    EXPECT_EQ(record.from, "a");
    EXPECT_EQ(record.importance, "1");
    EXPECT_EQ(record.noticeBody, "n");
    EXPECT_EQ(record.replyTo, "e");
    EXPECT_EQ(record.subject, "Lunch");
    EXPECT_EQ(record.description(), "Lunch");
    EXPECT_EQ(record.to, "b");
    EXPECT_EQ(record.unid, "0000000000000000000000000000000a");
    EXPECT_EQ(record.className, "Inbox");
    EXPECT_EQ(record.date, DateTime(2002, 2, 6, 12, 34, 56));
    EXPECT_TRUE(record.unread);
    EXPECT_TRUE(record.actions.empty());
}

TEST(NotesMailRecord, HasDefaultsAtFirst) {
    const NotesMailRecord record;
    EXPECT_EQ(record.deliveryReport, "N");
    EXPECT_EQ(record.signOption, "N");
    EXPECT_EQ(record.importance, "2");
    EXPECT_EQ(record.date, firstDate);
    EXPECT_EQ(record.meetingDate, firstDate);
    EXPECT_EQ(record.meetingDuration, 0u);
    EXPECT_FALSE(record.returnReceipt);
    EXPECT_FALSE(record.unread);
    for (const std::string* const text :
         {&record.bcc, &record.body, &record.cc, &record.from, &record.noticeBody, &record.replyTo,
          &record.sentTo, &record.subject, &record.to, &record.unid, &record.className, &record.meetingRoom})
        EXPECT_EQ(*text, "");
}

TEST(NotesMailRecord, NeedsNothingButTheDate) {
    const NotesMailRecord record(NotesItem{{"Date", {"0"}}}, TimeZone());
    EXPECT_EQ(record.date, DateTime(1993, 1, 1, 0, 0, 0));
    EXPECT_EQ(record.importance, ""); // what isn't there is empty
    EXPECT_FALSE(record.unread);
}

TEST(NotesMailRecord, NormalizesTheLineEndsOfEveryText) {
    const std::pair<const char*, std::string NotesMailRecord::*> rows[] = {
        {"Bcc", &NotesMailRecord::bcc},
        {"Body", &NotesMailRecord::body},
        {"Cc", &NotesMailRecord::cc},
        {"From", &NotesMailRecord::from},
        {"Importance", &NotesMailRecord::importance},
        {"NoticeBody", &NotesMailRecord::noticeBody},
        {"ReplyTo", &NotesMailRecord::replyTo},
        {"Subject", &NotesMailRecord::subject},
        {"To", &NotesMailRecord::to},
        {"UNID", &NotesMailRecord::unid},
        {"#ClassName", &NotesMailRecord::className},
    };
    for (const auto& [name, text] : rows) {
        SCOPED_TRACE(name);
        const NotesMailRecord record = recordWith({{name, {"1\r\n2\r3\n\r", "a second value"}}});
        EXPECT_EQ(record.*text, "1\n2\n3\n\n");
    }
}

TEST(NotesMailRecord, ShowsItsDateInTheUsersZone) {
    const struct {
        const char* seconds;
        std::int32_t offset;
        DateTime date;
    } rows[] = {
        {"287152496", 3600, DateTime(2002, 2, 6, 13, 34, 56)},
        {"287152496", -46800, DateTime(2002, 2, 5, 23, 34, 56)},
        {"00287152496", 0, DateTime(2002, 2, 6, 12, 34, 56)},
        {"3569120895", 0, DateTime(2106, 2, 7, 6, 28, 15)}, // the last second that 32 bits hold from 1970 on
        {"3569120896", -3600, DateTime(1969, 12, 31, 23, 0, 0)}, // and they wrap
        {"4294967295", 0, DateTime(1992, 12, 31, 23, 59, 59)},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.seconds);
        const NotesMailRecord record =
            recordWith({{"Date", {row.seconds}}, {"ActionList", {"Accept"}}}, TimeZone(row.offset));
        EXPECT_EQ(record.date, row.date);
        EXPECT_EQ(record.meetingDate, row.date);
    }
}

TEST(NotesMailRecord, RefusesAMessageWithoutADate) {
    const struct {
        Strings values;
        const char* text;
    } rows[] = {
        {{}, "Cannot convert string '' to unsigned."},
        {{""}, "Cannot convert string '' to unsigned."},
        {{"12x"}, "Cannot convert string '12x' to unsigned."},
        {{"-1"}, "Cannot convert string '-1' to unsigned."},
        {{" 1"}, "Cannot convert string ' 1' to unsigned."},
    };
    for (const auto& row : rows)
        EXPECT_EQ(textRaisedBy([&] { recordWith({{"Date", row.values}}); }), row.text);
    NotesItem item = itemWith({});
    item.erase("Date");
    EXPECT_EQ(textRaisedBy([&] { NotesMailRecord(item, TimeZone()); }),
              "Cannot convert string '' to unsigned.");
}

TEST(NotesMailRecord, IsUnreadWithExactlyOne) {
    const std::pair<Strings, bool> rows[] = {
        {{"1"}, true},   {{}, false},         {{""}, false},    {{"0"}, false},
        {{"01"}, false}, {{"0", "1"}, false}, {{"1\n"}, false},
    };
    for (const auto& [values, unread] : rows) {
        SCOPED_TRACE(testing::PrintToString(values));
        EXPECT_EQ(recordWith({{"Unread", values}}).unread, unread);
    }
}

TEST(NotesMailRecord, IsANoticeByItsActions) {
    const struct {
        Strings values;
        Strings actions;
    } rows[] = {
        {{}, {}},
        {{"Reply", ""}, {}},
        {{"Reply", "Reply", "", ""}, {}},
        {{"Accept", "Reply", "", "Decline", "Reply"}, {"Accept", "Decline"}},
        {{"reply"}, {"reply"}},         // "Reply" is exact
        {{"Reply\r\n"}, {"Reply\r\n"}}, // and taken as it stands
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.values));
        const NotesMailRecord record =
            recordWith({{"ActionList", row.values}, {"Room", {"7\r\n"}}, {"Duration", {"60"}}});
        const bool isNotice = !row.actions.empty();
        EXPECT_EQ(record.actions, row.actions);
        EXPECT_EQ(record.meetingRoom, isNotice ? "7\n" : "");
        EXPECT_EQ(record.meetingDuration, isNotice ? 60u : 0u);
        EXPECT_EQ(record.meetingDate, isNotice ? DateTime(2002, 2, 6, 12, 34, 56) : firstDate);
    }
}

TEST(NotesMailRecord, ANoticeMayTellItsDurationBadly) {
    for (const Strings& values : {Strings{}, Strings{""}, Strings{"an hour"}, Strings{"-1"}}) {
        SCOPED_TRACE(testing::PrintToString(values));
        const NotesMailRecord record = recordWith({{"ActionList", {"Accept"}}, {"Duration", values}});
        EXPECT_EQ(record.actions, Strings{"Accept"});
        EXPECT_EQ(record.meetingDuration, 0u);
        EXPECT_EQ(record.meetingRoom, "");
        EXPECT_EQ(record.meetingDate, DateTime(2002, 2, 6, 12, 34, 56)); // all the same
    }
}

TEST(NotesMailRecord, SendsItsProperties) {
    NotesItem item;
    NotesMailRecord().addTo(item, TimeZone());
    EXPECT_EQ(item, (NotesItem{{"Bcc", {""}},
                               {"Body", {""}},
                               {"Cc", {""}},
                               {"From", {""}},
                               {"ReplyTo", {""}},
                               {"Subject", {""}},
                               {"To", {""}},
                               {"#UNID", {""}}}));
    item.clear();
    NotesMailRecord record = recordWith({{"Body", {"Hi"}}});
    record.sentTo = "f";
    record.body = "Hi\r\n";
    record.addTo(item, TimeZone(3600));
    EXPECT_EQ(item, (NotesItem{{"Bcc", {"d"}},
                               {"Body", {"Hi\r\n"}}, // as it stands
                               {"Cc", {"c"}},
                               {"From", {"a"}},
                               {"ReplyTo", {"e"}},
                               {"Subject", {"Lunch"}},
                               {"To", {"b"}},
                               {"#UNID", {"0000000000000000000000000000000a"}}}));
}

} // namespace
} // namespace tsr
