#include "handheld/commands/recordFiles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "handheld/CategoryTable.h"
#include "handheld/HandheldError.h"
#include "handheld/commands/CommandLine.h"
#include "handheld/forms/RecordForm.h"
#include "handheld/standardDatabases.h"
#include "interchange/InterchangeError.h"

namespace tsr {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Pair;
using testing::SizeIs;

class RecordFiles : public testing::Test {
protected:
    RecordFiles() { addStandardDatabases(handheld); }

    HandheldDatabase& database(const char* name) { return *handheld.find(name); }
    HandheldRecord onlyRecord(const char* name) {
        EXPECT_THAT(database(name).records().all(), SizeIs(1));
        return database(name).records().all().at(0);
    }
    FieldValues onlyFields(const char* name) { return recordForm(name)->read(onlyRecord(name).data); }

    Handheld handheld;
};

const std::string card = "BEGIN:VCARD\r\nVERSION:4.0\r\nFN:Max M\xC3\xBCller\r\nN:M\xC3\xBCller;Max;;;\r\n"
                         "ORG:Tools\r\nTEL;TYPE=work:1\r\nTEL;TYPE=work:2\r\nTEL;TYPE=cell;PREF=1:3\r\n"
                         "ADR:;;Main St;Town;;;\r\nX-CUSTOM2:two\r\nNOTE:old\\nfriend\r\nCATEGORIES:Golf\r\n"
                         "END:VCARD\r\n";

TEST_F(RecordFiles, TakeContactsInAndOut) {
    importContacts(handheld, card);
    EXPECT_THAT(onlyFields("AddressDB"),
                ElementsAre(Pair("address", "Main St"), Pair("city", "Town"), Pair("company", "Tools"),
                            Pair("custom2", "two"), Pair("display", "mobile"), Pair("firstName", "Max"),
                            Pair("lastName", "M\xFCller"), Pair("mobile", "3"), Pair("note", "old\nfriend"),
                            Pair("work", "1\n2")));
    HandheldDatabase& addresses = database("AddressDB");
    EXPECT_EQ(CategoryTable(addresses).name(onlyRecord("AddressDB").category), "Golf");
    EXPECT_EQ(exportedContacts(addresses, VCardVersion::V4), card);
}

TEST_F(RecordFiles, RefuseContactsThatDoNotFit) {
    std::string lines = "BEGIN:VCARD\r\nN:Lee;Pat;;;\r\nEMAIL:a\r\nTEL:1\r\n";
    for (const char* type : {"work", "home", "fax", "pager"})
        lines += std::string("TEL;TYPE=") + type + ":1\r\n";
    try {
        importContacts(handheld, lines + "END:VCARD\r\n");
        FAIL();
    } catch (const FieldError& error) {
        EXPECT_STREQ(error.what(), "Lee, Pat: an address has at most five phones");
    }
    EXPECT_THROW(importContacts(handheld, "BEGIN:VCARD\r\nNOTE:\xE2\x82\xAC\r\nEND:VCARD\r\n"), UsageError);
    EXPECT_THROW(importContacts(handheld, "BEGIN:VCARD\r\n"), InterchangeError);
}

std::string calendar(const std::string& lines) {
    return "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//Tessera//EN\r\nBEGIN:VTODO\r\n" + lines
         + "END:VTODO\r\nEND:VCALENDAR\r\n";
}

TEST_F(RecordFiles, TakeTasksInAndOut) {
    importTasks(handheld,
                calendar("SUMMARY:Call Kim\r\nDESCRIPTION:soon\r\nDUE;VALUE=DATE:20020208\r\n"
                         "PRIORITY:5\r\nSTATUS:COMPLETED\r\nCLASS:PRIVATE\r\nCATEGORIES:Calls\r\n"));
    EXPECT_THAT(onlyFields("ToDoDB"),
                ElementsAre(Pair("completed", "yes"), Pair("description", "Call Kim"),
                            Pair("due", "2002-02-08"), Pair("note", "soon"), Pair("priority", "2")));
    const HandheldRecord record = onlyRecord("ToDoDB");
    EXPECT_EQ(record.attributes & HandheldRecord::secret, HandheldRecord::secret);
    EXPECT_EQ(exportedTasks(database("ToDoDB"), 1012998896), // 2002-02-06 12:34:56 UTC
              calendar("UID:todo-" + std::to_string(record.id)
                       + "\r\nDTSTAMP:20020206T123456Z\r\nSUMMARY:Call Kim\r\nDESCRIPTION:soon\r\n"
                         "DUE;VALUE=DATE:20020208\r\nPRIORITY:5\r\nSTATUS:COMPLETED\r\nCLASS:PRIVATE\r\n"
                         "CATEGORIES:Calls\r\n"));
}

TEST_F(RecordFiles, GiveTasksWithoutAPriorityTheLowest) {
    importTasks(handheld, calendar("SUMMARY:a\r\n"));
    EXPECT_THAT(onlyFields("ToDoDB"), Contains(Pair("priority", "5")));
}

TEST_F(RecordFiles, RefuseTasksThatRepeat) {
    EXPECT_THROW(importTasks(handheld, calendar("SUMMARY:a\r\nRRULE:FREQ=DAILY\r\n")), UsageError);
}

std::string eventLines(const std::string& subject, const std::string& lines) {
    return "BEGIN:VEVENT\r\nUID:" + subject + "\r\nSUMMARY:" + subject + "\r\n" + lines + "END:VEVENT\r\n";
}
std::string calendarOf(const std::string& components) {
    return "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//Tessera//EN\r\n" + components + "END:VCALENDAR\r\n";
}

TEST_F(RecordFiles, TakeEventsInAndOut) {
    const auto refused =
        importEvents(handheld, calendarOf(eventLines("M\xC3\xBCller", "DTSTART:20261123T100000\r\n"
                                                                      "DURATION:PT1H\r\nCLASS:PRIVATE\r\n"
                                                                      "RRULE:FREQ=WEEKLY\r\n"
                                                                      "EXDATE:20261130T100000\r\n")));
    EXPECT_THAT(refused, testing::IsEmpty());
    EXPECT_THAT(onlyFields("DatebookDB"),
                ElementsAre(Pair("date", "2026-11-23"), Pair("description", "M\xFCller"),
                            Pair("end", "11:00"), Pair("every", "1"), Pair("except", "2026-11-30"),
                            Pair("on", "2"), Pair("repeat", "weekly"), Pair("start", "10:00")));
    const HandheldRecord record = onlyRecord("DatebookDB");
    EXPECT_EQ(record.attributes & HandheldRecord::secret, HandheldRecord::secret);
    EXPECT_EQ(exportedEvents(database("DatebookDB"), 1012998896), // 2002-02-06 12:34:56 UTC
              calendarOf("BEGIN:VEVENT\r\nUID:event-" + std::to_string(record.id)
                         + "\r\nDTSTAMP:20020206T123456Z\r\nSUMMARY:M\xC3\xBCller\r\n"
                           "DTSTART:20261123T100000\r\nDTEND:20261123T110000\r\nCLASS:PRIVATE\r\n"
                           "RRULE:FREQ=WEEKLY;BYDAY=MO;WKST=SU\r\nEXDATE:20261130T100000\r\nEND:VEVENT\r\n"));
}

TEST_F(RecordFiles, RefuseEventsAlone) {
    const std::string start = "DTSTART:20261123T100000\r\n";
    const auto refused = importEvents(
        handheld, calendarOf(eventLines("Hourly", start + "RRULE:FREQ=HOURLY\r\n")
                             + eventLines("Late", "DTSTART:20261123T230000\r\nDURATION:PT2H\r\n")
                             + eventLines("\xE2\x82\xAC", start) // a character that it doesn't know
                             + eventLines("Far", "DTSTART:20320101T100000\r\n") + eventLines("Good", start)));
    EXPECT_THAT(refused, SizeIs(4));
    EXPECT_THAT(refused, Contains("'Hourly': it repeats by a rule that a handheld can't hold"));
    EXPECT_THAT(refused, Contains("'Late': it runs over midnight, which no event of a handheld does"));
    EXPECT_THAT(onlyFields("DatebookDB"), Contains(Pair("description", "Good")));
}

TEST_F(RecordFiles, TakeAnEventWithAllItsDaysOrNotAtAll) {
    const auto refused = importEvents(
        handheld, calendarOf(eventLines("Team", "DTSTART:20261123T100000\r\nRRULE:FREQ=DAILY\r\n")
                             + eventLines("Team", "RECURRENCE-ID:20261124T100000\r\n"
                                                  "DTSTART:20261124T233000\r\nDURATION:PT1H\r\n")));
    EXPECT_THAT(refused, SizeIs(1));
    EXPECT_THAT(database("DatebookDB").records().all(), testing::IsEmpty());
}

TEST_F(RecordFiles, TakeRecordsInAndOutAsJson) {
    const std::string json = R"({
  "database": "MemoDB",
  "records": [
    {
      "category": "Golf",
      "secret": true,
      "fields": {
        "text": "Mü"
      }
    }
  ]
}
)";
    importRecords(handheld, json);
    EXPECT_THAT(onlyFields("MemoDB"), ElementsAre(Pair("text", "M\xFC")));
    EXPECT_EQ(exportedRecords(database("MemoDB")), json);
}

TEST_F(RecordFiles, RefuseOtherJson) {
    EXPECT_THROW(importRecords(handheld, "x"), HandheldError);
    EXPECT_THROW(importRecords(handheld, "[]"), HandheldError);
    EXPECT_THROW(importRecords(handheld, R"({"database": "Nothing", "records": []})"), HandheldError);
    EXPECT_THROW(importRecords(handheld, R"({"database": "MemoDB", "records": [{}]})"), HandheldError);
    EXPECT_THROW(importRecords(handheld, R"({"database": "MemoDB", "records": [{"fields": {"x": "y"}}]})"),
                 FieldError);
    EXPECT_THROW(importRecords(handheld, R"({"database": "MemoDB", "records": [{"fields": {"text": 1}}]})"),
                 HandheldError);
}

TEST_F(RecordFiles, HaveNoCategoryWhenTheTableIsFull) {
    CategoryTable table(database("MemoDB"));
    for (int i = 0; i < HandheldRecord::categories; ++i) table.findOrAdd("c" + std::to_string(i));
    importRecords(handheld,
                  R"({"database": "MemoDB", "records": [{"category": "d", "fields": {"text": "x"}}]})");
    EXPECT_EQ(onlyRecord("MemoDB").category, 0);
}

} // namespace
} // namespace tsr
