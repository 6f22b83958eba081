// Whole HotSyncs of meetings, of which one may be several records.

#include "handheld/forms/DatebookForm.h"
#include "replication/MeetingItems.h"
#include "replication/ReplicationTest.h"
#include "replication/calendars.h"

namespace tsr {
namespace {

using std::chrono::days;
using std::chrono::sys_days;
using test::Calendar;
using test::Strings;
using testing::ElementsAre;
using testing::IsEmpty;

const sys_days wednesday = std::chrono::year(2002) / 2 / 6; // today, by the test's clock
const DateWindow window{wednesday - days(7), wednesday + days(30)};

class DatebookReplication : public test::ApplicationTest<test::MeetingItems, test::Replica> {
protected:
    void startAfresh(char conflictRule = 'C') {
        connectAfresh();
        configure(NextReplication::Normal, conflictRule);
    }

    std::uint32_t add(const FieldValues& fields) {
        return database().addRecord(DatebookForm().write(fields));
    }

    FieldValues fieldsOf(std::uint32_t id) {
        return DatebookForm().read(database().records().find(id)->data);
    }

    // Changes what is named and leaves the rest.
    void edit(std::uint32_t id, const FieldValues& changes) {
        FieldValues fields = fieldsOf(id);
        for (const auto& [name, value] : changes) fields[name] = value;
        ASSERT_TRUE(database().editRecord(id, DatebookForm().write(fields)));
    }

    // The record of that day.
    std::uint32_t idOn(const std::string& date) {
        for (const HandheldRecord& record : database().records().all()) {
            if (!record.isGone() && DatebookForm().read(record.data).at("date") == date) return record.id;
        }
        ADD_FAILURE() << "nothing on " << date;
        return 0;
    }

    static Meeting timed(const std::string& subject, sys_days day, int hour) {
        Meeting meeting;
        meeting.subject = subject;
        meeting.start = secondsOf(day) + hour * 3600;
        return meeting;
    }

    // Each Wednesday at 10:00 for four weeks; that of the second week is on the day after at 15:00.
    static Meeting staffMeeting() {
        Meeting meeting = timed("Staff", wednesday, 10);
        RepeatRule rule{.unit = RepeatRule::Unit::Week, .until = wednesday + days(21)};
        rule.daysOfWeek = 8;
        meeting.pattern = MeetingPattern{.rule = rule, .start = meeting.start};
        meeting.pattern->exceptions = {
            {.patternDate = wednesday + days(7), .start = secondsOf(wednesday + days(8)) + 15 * 3600}};
        return meeting;
    }

    Calendar onDevice() { return test::calendarOnDevice(database(), window); }
    Calendar inNotes() { return test::calendarInNotes(documents(), ZoneRule(), window); }

    void syncAndExpect(const Calendar& calendar) {
        sync();
        EXPECT_EQ(onDevice(), calendar);
        EXPECT_EQ(inNotes(), calendar);
        expectNothingMoves();
    }
};

const Calendar staffDays{"2002-02-06 10:00 60 Staff | ", "2002-02-14 15:00 60 Staff | ",
                         "2002-02-20 10:00 60 Staff | ", "2002-02-27 10:00 60 Staff | "};

Calendar without(Calendar calendar, const std::string& line) {
    calendar.erase(line);
    return calendar;
}

Calendar with(Calendar calendar, const std::string& line) {
    calendar.insert(line);
    return calendar;
}

TEST_F(DatebookReplication, AMovedInstanceIsARecordOfItsOwn) {
    startAfresh();
    addToNotes(toProperties(staffMeeting()));
    syncAndExpect(staffDays);
    EXPECT_EQ(database().records().size(), 2u);
    EXPECT_EQ(fieldsOf(idOn("2002-02-06"))["except"], "2002-02-13");
}

TEST_F(DatebookReplication, ADeletedInstanceIsADifference) {
    startAfresh();
    const std::string unid = addToNotes(toProperties(staffMeeting()));
    sync();
    ASSERT_TRUE(database().deleteRecord(idOn("2002-02-14")));
    syncAndExpect(without(staffDays, "2002-02-14 15:00 60 Staff | "));
    EXPECT_EQ(documents().at(0).unid, unid); // still the same meeting
}

TEST_F(DatebookReplication, AChangedInstanceIsADifferenceAgainAndAgain) {
    startAfresh();
    addToNotes(toProperties(staffMeeting()));
    sync();
    edit(idOn("2002-02-14"), {{"description", "Review"}});
    const Calendar rest = without(staffDays, "2002-02-14 15:00 60 Staff | ");
    syncAndExpect(with(rest, "2002-02-14 15:00 60 Review | "));
    EXPECT_EQ(documents().size(), 1u);
    edit(idOn("2002-02-14"), {{"start", "16:00"}, {"end", "17:00"}});
    syncAndExpect(with(rest, "2002-02-14 16:00 60 Review | "));
}

// It is given up under its old identity and comes back as new items, its exception among them.
TEST_F(DatebookReplication, AnEditedMasterComesBackWithItsInstances) {
    startAfresh();
    const std::string unid = addToNotes(toProperties(staffMeeting()));
    sync();
    edit(idOn("2002-02-06"), {{"description", "Team"}});
    syncAndExpect({"2002-02-06 10:00 60 Team | ", "2002-02-14 15:00 60 Staff | ",
                   "2002-02-20 10:00 60 Team | ", "2002-02-27 10:00 60 Team | "});
    ASSERT_EQ(documents().size(), 2u);
    for (const Document& document : documents()) EXPECT_NE(document.unid, unid);
}

TEST_F(DatebookReplication, ADeletedMasterLeavesItsChangedInstances) {
    startAfresh();
    addToNotes(toProperties(staffMeeting()));
    sync();
    ASSERT_TRUE(database().deleteRecord(idOn("2002-02-06")));
    syncAndExpect({"2002-02-14 15:00 60 Staff | "});
    EXPECT_EQ(documents().size(), 1u);
}

TEST_F(DatebookReplication, AMeetingOfSeveralDaysIsARecordADay) {
    startAfresh();
    Meeting fair = timed("Fair", wednesday, 0);
    fair.allDay = true;
    fair.minutes = 3 * 1440;
    addToNotes(toProperties(fair));
    syncAndExpect({"2002-02-06 all day Fair | ", "2002-02-07 all day Fair | ", "2002-02-08 all day Fair | "});
    EXPECT_EQ(database().records().size(), 3u);
    edit(idOn("2002-02-07"), {{"description", "Journey"}});
    syncAndExpect(
        {"2002-02-06 all day Fair | ", "2002-02-07 all day Journey | ", "2002-02-08 all day Fair | "});
}

TEST_F(DatebookReplication, OnlyTheWindowTakesPart) {
    startAfresh();
    addToNotes(toProperties(timed("Past", window.first - days(1), 10)));
    addToNotes(toProperties(timed("First", window.first, 10)));
    addToNotes(toProperties(timed("Last", window.last, 10)));
    addToNotes(toProperties(timed("Future", window.last + days(1), 10)));
    sync();
    EXPECT_EQ(onDevice(), (Calendar{"2002-01-30 10:00 60 First | ", "2002-03-08 10:00 60 Last | "}));
    EXPECT_EQ(database().records().size(), 2u);
    expectNothingMoves();
    EXPECT_EQ(documents().size(), 4u);
}

TEST_F(DatebookReplication, ARuleThatTheDeviceCannotHoldIsRefusedAlone) {
    startAfresh();
    Meeting twice = timed("Twice a month", wednesday, 10);
    RepeatRule rule{.unit = RepeatRule::Unit::MonthByDate};
    rule.dayNumbers = {6, 20};
    twice.pattern = MeetingPattern{.rule = rule, .start = twice.start};
    addToNotes(toProperties(twice));
    addToNotes(toProperties(timed("Lunch", wednesday, 12)));
    for (int session = 1; session <= 2; ++session) { // and offered again
        hotSync();
        EXPECT_THAT(log(), ElementsAre("19 Date Book", testing::HasSubstr("Unable to convert Notes record"),
                                       testing::HasSubstr("**** Not implemented yet."), "20 Date Book"));
        EXPECT_EQ(onDevice(), Calendar{"2002-02-06 12:00 60 Lunch | "});
    }
    EXPECT_EQ(documents().size(), 2u);
}

TEST_F(DatebookReplication, TheConflictRuleDecides) {
    for (const char rule : {'C', 'S'}) {
        SCOPED_TRACE(rule);
        startAfresh(rule);
        addToNotes(toProperties(timed("Lunch", wednesday, 12)));
        sync();
        edit(idOn("2002-02-06"), {{"description", "Device"}});
        Document document = documents().at(0);
        document.properties["0037001F"] = {"Notes"};
        replaceInNotes(document);
        if (rule == 'C') {
            syncAndExpect({"2002-02-06 12:00 60 Device | "});
        } else { // both stay
            syncAndExpect({"2002-02-06 12:00 60 Device | ", "2002-02-06 12:00 60 Notes | "});
        }
    }
}

TEST_F(DatebookReplication, AFailedCallLosesNothing) {
    const Calendar expected{"2002-02-06 10:00 60 Staff | ",  "2002-02-07 09:00 60 New | ",
                            "2002-02-08 12:00 60 Dinner | ", "2002-02-09 09:00 60 Notice | ",
                            "2002-02-14 15:00 60 Review | ", "2002-02-20 10:00 60 Staff | ",
                            "2002-02-27 10:00 60 Staff | "};
    Strings untidy;
    for (std::uint64_t number = 1;; ++number) {
        SCOPED_TRACE("call " + std::to_string(number));
        startAfresh();
        addToNotes(toProperties(staffMeeting()));
        const std::string lunch = addToNotes(toProperties(timed("Lunch", wednesday + days(2), 12)));
        const std::uint32_t bread = add({{"description", "Bread"}, {"date", "2002-02-06"}});
        sync();
        edit(idOn("2002-02-14"), {{"description", "Review"}});
        ASSERT_TRUE(database().deleteRecord(bread));
        add({{"description", "New"}, {"date", "2002-02-07"}, {"start", "09:00"}, {"end", "10:00"}});
        for (Document document : documents()) {
            if (document.unid != lunch) continue;
            document.properties["0037001F"] = {"Dinner"};
            replaceInNotes(document);
        }
        addToNotes(toProperties(timed("Notice", wednesday + days(3), 9)));
        const std::string call = hotSyncWithFailedCall(number);
        sync();
        if (onDevice() != expected || inNotes() != expected) untidy.push_back(call);
        if (call.empty() || HasFailure()) break;
    }
    // As in AddressReplication.AFailedCallLosesNothing.
    EXPECT_THAT(untidy, ElementsAre(testing::HasSubstr("category 4"), testing::StartsWith("SyncDeleteRec(")));
}

} // namespace
} // namespace tsr
