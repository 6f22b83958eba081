#include "handheld/forms/RecordForm.h"

#include <gtest/gtest.h>

#include "handheld/HandheldError.h"
#include "support/bytes.h"

namespace tsr {
namespace {

using test::bytes;
using test::hexText;

struct Row {
    const char* reason;
    const char* database;
    FieldValues values;
    const char* record;
};

// Packed dates: 2002-02-08 is 98 * 512 + 2 * 32 + 8 = 0xC448, 2002-02-06 0xC446, 2002-03-01 98 * 512 + 96 + 1
// = 0xC461.
const Row rows[] = {
    {"memo", "MemoDB", {{"text", "Hi\nyou"}}, "48 69 0A 79 6F 75 00"},
    {"empty memo", "MemoDB", {}, "00"},
    {"to do without a date", "ToDoDB", {{"description", "A"}, {"priority", "1"}}, "FF FF 01 41 00 00"},
    {"to do, done",
     "ToDoDB",
     {{"description", "A"}, {"note", "B"}, {"due", "2002-02-08"}, {"priority", "5"}, {"completed", "yes"}},
     "C4 48 85 41 00 42 00"},
    // The slots take home (1) and mobile (7), and then what is left: work 0, fax 2, other 3. Mobile is in the
    // second slot.
    {"address with two phones",
     "AddressDB",
     {{"lastName", "L"},
      {"company", "C"},
      {"home", "1"},
      {"mobile", "2"},
      {"display", "mobile"},
      {"note", "N"}},
     "00 13 20 71 00 04 00 1D 03 4C 00 43 00 31 00 32 00 4E 00"},
    // With no phone the slots are work, home, fax, other, email, and none is shown.
    {"address without a phone", "AddressDB", {{"firstName", "F"}}, "00 04 32 10 00 00 00 02 00 46 00"},
    {"untimed event", "DatebookDB", {{"date", "2002-02-06"}}, "FF FF FF FF C4 46 00 00"},
    {"event with everything",
     "DatebookDB",
     {{"date", "2002-02-06"},
      {"start", "09:30"},
      {"end", "10:00"},
      {"alarm", "2h"},
      {"repeat", "weekly"},
      {"every", "2"},
      {"until", "2002-03-01"},
      {"on", "10"},
      {"except", "2002-02-06,2002-02-08"},
      {"description", "D"},
      {"note", "N"}},
     "09 1E 0A 00 C4 46 7C 00 02 01 02 00 C4 61 02 0A 00 00 00 02 C4 46 C4 48 44 00 4E 00"},
    {"mail without a date",
     "MailDB",
     {{"priority", "normal"}, {"to", "T"}},
     "00 00 00 00 04 00 00 00 54 00 00 00 00 00 00 00"},
    {"mail with everything",
     "MailDB",
     {{"date", "2002-02-06"},
      {"time", "12:34"},
      {"priority", "low"},
      {"read", "yes"},
      {"signature", "yes"},
      {"confirmRead", "yes"},
      {"confirmDelivery", "yes"},
      {"bits", "3"},
      {"subject", "1"},
      {"from", "2"},
      {"to", "3"},
      {"cc", "4"},
      {"bcc", "5"},
      {"replyTo", "6"},
      {"sentTo", "7"},
      {"body", "8"}},
     "C4 46 0C 22 F8 03 31 00 32 00 33 00 34 00 35 00 36 00 37 00 38 00 00"},
};

TEST(RecordForm, WritesTheRecordsOfTheApplications) {
    for (const Row& row : rows) {
        SCOPED_TRACE(row.reason);
        EXPECT_EQ(hexText(recordForm(row.database)->write(row.values)), hexText(bytes(row.record)));
    }
}

TEST(RecordForm, ReadsThemBack) {
    for (const Row& row : rows) {
        SCOPED_TRACE(row.reason);
        EXPECT_EQ(recordForm(row.database)->read(bytes(row.record)), row.values);
    }
}

TEST(RecordForm, RefusesEveryShortenedRecord) {
    for (const Row& row : rows) {
        SCOPED_TRACE(row.reason);
        const std::vector<std::uint8_t> record = bytes(row.record);
        // The last byte of a mail is one that may be missing.
        const std::size_t needed = record.size() - (row.database == std::string("MailDB") ? 1 : 0);
        for (std::size_t size = 0; size < needed; ++size) {
            const std::vector<std::uint8_t> cut(record.begin(),
                                                record.begin() + static_cast<std::ptrdiff_t>(size));
            EXPECT_THROW(recordForm(row.database)->read(cut), HandheldError) << size;
        }
    }
}

TEST(RecordForm, KnowsItsFields) {
    for (const Row& row : rows) recordForm(row.database)->checkNames(row.values);
    EXPECT_THROW(recordForm("MemoDB")->checkNames({{"txt", "a"}}), FieldError);
    EXPECT_EQ(recordForm("VellumConfig"), nullptr);
}

TEST(RecordForm, RefusesValuesThatCannotBe) {
    const std::pair<const char*, FieldValues> bad[] = {
        {"ToDoDB", {{"due", "2002-02-30"}}},
        {"ToDoDB", {{"due", "1903-12-31"}}},
        {"ToDoDB", {{"due", "2032-01-01"}}}, // 7 bits for the year
        {"ToDoDB", {{"due", "2002-02-06x"}}},
        {"ToDoDB", {{"priority", "128"}}},
        {"ToDoDB", {{"priority", "high"}}},
        {"ToDoDB", {{"completed", "maybe"}}},
        {"AddressDB",
         {{"work", "1"}, {"home", "2"}, {"fax", "3"}, {"other", "4"}, {"email", "5"}, {"main", "6"}}},
        {"AddressDB", {{"work", "1"}, {"display", "home"}}},
        {"AddressDB",
         {{"lastName", std::string(255, 'a')}, {"company", "C"}}}, // at 257, which a byte cannot say
        {"DatebookDB", {}},                                        // no date
        {"DatebookDB", {{"date", "2002-02-06"}, {"start", "09:00"}}},
        {"DatebookDB", {{"date", "2002-02-06"}, {"start", "09:00"}, {"end", "08:59"}}},
        {"DatebookDB", {{"date", "2002-02-06"}, {"start", "24:00"}, {"end", "24:00"}}},
        {"DatebookDB", {{"date", "2002-02-06"}, {"alarm", "5"}}},
        {"DatebookDB", {{"date", "2002-02-06"}, {"alarm", "256m"}}},
        {"DatebookDB", {{"date", "2002-02-06"}, {"repeat", "often"}}},
        {"DatebookDB",
         {{"date", "2002-02-06"}, {"except", "2002-02-07,"}, {"repeat", "daily"}, {"every", "256"}}},
        {"DatebookDB", {{"date", "2002-02-06"}, {"except", "2002-02-07,x"}}},
        {"MailDB", {{"priority", "urgent"}}},
        {"MailDB", {{"bits", "1024"}}},
        {"MailDB", {{"date", "2002-02-06"}, {"time", "12:60"}}},
    };
    for (const auto& [database, values] : bad) {
        SCOPED_TRACE(testing::PrintToString(values));
        EXPECT_THROW(recordForm(database)->write(values), FieldError);
    }
}

TEST(RecordForm, JoinsPhonesOfOneKind) {
    // Slots 1 and 2 both hold a home phone (label 1).
    const FieldValues values = recordForm("AddressDB")->read(bytes("00 00 00 11 00 00 00 18 00 31 00 32 00"));
    EXPECT_EQ(values, (FieldValues{{"home", "1\n2"}, {"display", "home"}}));
}

TEST(RecordForm, RefusesRecordsThatMakeNoSense) {
    const std::pair<const char*, const char*> bad[] = {
        {"AddressDB", "00 00 00 08 00 00 00 08 00 31 00"},                 // phone label 8
        {"DatebookDB", "FF FF FF FF C4 46 40 00 01 03"},                   // alarm unit 3
        {"DatebookDB", "FF FF FF FF C4 46 20 00 00 00 FF FF 01 00 00 00"}, // repeats, but never
        {"DatebookDB", "FF FF FF FF C4 46 20 00 06 00 FF FF 01 00 00 00"},
    };
    for (const auto& [database, record] : bad) {
        SCOPED_TRACE(record);
        EXPECT_THROW(recordForm(database)->read(bytes(record)), HandheldError);
    }
}

} // namespace
} // namespace tsr
