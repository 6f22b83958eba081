#include "records/datebookMeeting.h"

#include "foundation/signals.h"
#include "records/PalmDummyRecord.h"
#include "records/RepeatsDailyInfo.h"
#include "records/RepeatsMonthlyByDayInfo.h"
#include "records/RepeatsWeeklyInfo.h"
#include "support/errors.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

using test::textRaisedBy;

using Dates = std::set<Date>;
using Tags = std::vector<std::uint32_t>;

constexpr std::uint32_t tenth = 11817; // days from 1970-01-01 to 2002-05-10, a Friday
constexpr char tooLong[] = "Cannot perform conversion; integer value would have been truncated.";

Date may(std::uint32_t day) { return Date(2002, 5, day); }

NotesDatebookRecord lunch() {
    NotesDatebookRecord meeting;
    meeting.subject = "Lunch";
    meeting.body = "Bring food";
    meeting.date = may(10);
    meeting.time = TimeOfDay(12, 30, 0);
    meeting.duration = TimeInterval::fromMinutes(90);
    return meeting;
}

NotesDatebookRecord allDay(std::int64_t minutes) {
    NotesDatebookRecord meeting = lunch();
    meeting.time = TimeOfDay();
    meeting.allDay = true;
    meeting.duration = TimeInterval::fromMinutes(minutes);
    return meeting;
}

NotesDatebookRecord weekly(NotesDatebookRecord meeting) {
    RepeatsWeeklyInfo rule;
    rule.setDaysOfWeek(32);
    meeting.repeat = rule.clone();
    return meeting;
}

DatebookException exception(const Date& patternDate, const Date& date, const TimeOfDay& time) {
    DatebookException result;
    result.patternDate = patternDate;
    result.date = date;
    result.time = time;
    return result;
}

struct Group {
    explicit Group(const NotesDatebookRecord& meeting) : records(toPalmGroup(meeting, spread)) {}

    Tags tags() const {
        Tags result;
        records.tags(result);
        return result;
    }
    const PalmDatebookRecord& at(std::uint32_t tag) const { return datebookMember(records.get(tag)); }

    bool spread = false;
    PalmRecordGroup records;
};

TEST(DatebookMeeting, TheTagOfARecordIsTheNumberOfItsDay) {
    const std::pair<Date, std::uint32_t> rows[] = {
        {Date(1970, 1, 1), 0}, {Date(1970, 1, 2), 1},        {Date(2001, 9, 9), 11574},
        {may(10), tenth},      {Date(9767, 2, 16), 2847842}, // 2,982,616 days after 1601
    };
    for (const auto& [date, tag] : rows) EXPECT_EQ(datebookTag(date), tag);
    EXPECT_EQ(textRaisedBy([] { datebookTag(Date(1969, 12, 31)); }),
              "Cannot perform conversion; integer value would have lost it's sign.");
}

TEST(DatebookMeeting, ARecordHasWhatAMeetingHasButForItsPattern) {
    NotesDatebookRecord meeting = weekly(lunch());
    meeting.chair = "Ann";
    meeting.invitees = {"Bob"};
    meeting.deletions = {may(17)};
    meeting.exceptions = {exception(may(24), may(25), TimeOfDay())};
    const PalmDatebookRecord plain = toPalmRecord(meeting);
    EXPECT_EQ(plain.description(), "Lunch");
    EXPECT_EQ(plain.note(), "Bring food");
    EXPECT_EQ(plain.date(), may(10));
    EXPECT_EQ(plain.time(), TimeOfDay(12, 30, 0));
    EXPECT_EQ(plain.duration().minutes(), 90);
    EXPECT_FALSE(plain.allDay() || plain.hasAlarm() || plain.isPrivate());
    EXPECT_FALSE(plain.repeat().repeats());
    EXPECT_TRUE(plain.exceptions().empty());
    EXPECT_EQ(plain.chair(), "");
    EXPECT_TRUE(plain.invitees().empty());

    meeting.allDay = meeting.isPrivate = meeting.hasAlarm = true;
    meeting.alarmLead = TimeInterval::fromMinutes(5);
    const PalmDatebookRecord other = toPalmRecord(meeting);
    EXPECT_TRUE(other.allDay() && other.hasAlarm() && other.isPrivate());
    EXPECT_EQ(other.alarmLead().minutes(), 5);
}

TEST(DatebookMeeting, AnAlarmThatIsOffLeavesNoLead) {
    NotesDatebookRecord meeting = lunch();
    meeting.alarmLead = TimeInterval::fromMinutes(5);
    EXPECT_EQ(toPalmRecord(meeting).alarmLead(), TimeInterval());
}

TEST(DatebookMeeting, AMeetingThatTakesPlaceOnceIsOneRecord) {
    NotesDatebookRecord meeting = lunch();
    meeting.instances = {may(11)}; // nothing looks at a pattern without a rule
    meeting.deletions = {may(12)};
    meeting.exceptions = {exception(may(13), may(14), TimeOfDay())};
    const Group group(meeting);
    EXPECT_EQ(group.tags(), Tags{0});
    EXPECT_TRUE(group.at(0).exceptions().empty());
    EXPECT_FALSE(group.spread);
}

TEST(DatebookMeeting, AnAllDayMeetingSpreadsOverItsDays) {
    const struct {
        std::int64_t minutes;
        Tags tags;
    } rows[] = {
        {0, {0}},
        {1, {0}},
        {1440, {0}},
        {1441, {0, tenth + 1}},
        {2880, {0, tenth + 1}},
        {4320, {0, tenth + 1, tenth + 2}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.minutes);
        const Group group(allDay(row.minutes));
        EXPECT_EQ(group.tags(), row.tags);
        EXPECT_EQ(group.spread, row.tags.size() > 1);
        EXPECT_EQ(group.at(0).duration().minutes(), row.minutes); // the master keeps it whole
        EXPECT_EQ(group.at(0).date(), may(10));
        for (std::uint32_t k = 1; k < row.tags.size(); ++k) {
            const PalmDatebookRecord& day = group.at(tenth + k);
            EXPECT_EQ(day.date(), may(10 + k));
            EXPECT_EQ(day.duration(), TimeInterval::fromDays(1));
            EXPECT_TRUE(day.allDay());
            EXPECT_EQ(day.description(), "Lunch");
            EXPECT_EQ(&day.note(), &group.at(0).note()); // the text is there once
        }
    }
}

TEST(DatebookMeeting, AMeetingWithATimeDoesNotSpread) {
    NotesDatebookRecord meeting = allDay(14400);
    meeting.allDay = false;
    const Group group(meeting);
    EXPECT_EQ(group.tags(), Tags{0});
    EXPECT_FALSE(group.spread);
}

TEST(DatebookMeeting, RefusesMoreDaysThanADatabaseHoldsRecords) {
    EXPECT_EQ(Group(allDay(94370400)).records.size(), 65535u); // 65,535 days
    for (const std::int64_t minutes : {94370401LL, 94371840LL, 4294967295LL}) {
        EXPECT_EQ(textRaisedBy([&] { Group{allDay(minutes)}; }), tooLong);
    }
}

TEST(DatebookMeeting, RefusesInstancesThatMakeTooManyDaysTogether) {
    NotesDatebookRecord meeting = weekly(allDay(94370400 / 3)); // 21,845 days each
    meeting.instances = {may(10), may(11)};
    EXPECT_EQ(Group(meeting).records.size(), 21846u); // they overlap
    for (std::uint32_t day = 12; day <= 31; ++day) meeting.instances.insert(may(day));
    EXPECT_EQ(Group(meeting).records.size(), 21866u); // 22 of them still do
    EXPECT_TRUE(Group(meeting).spread);
    meeting.instances = {Date(2002, 1, 1), Date(2062, 1, 1), Date(2122, 1, 1)}; // 21,915 days apart
    EXPECT_EQ(Group(meeting).records.size(), 65533u);                           // three times 21,844, and one
    meeting.instances.insert(Date(2182, 1, 1));
    EXPECT_EQ(textRaisedBy([&] { Group{meeting}; }), tooLong);

    meeting.instances = {may(10)};
    DatebookException longer = exception(may(17), may(17), TimeOfDay());
    longer.setDuration(TimeInterval::fromMinutes(4294967295));
    meeting.exceptions = {longer};
    EXPECT_EQ(textRaisedBy([&] { Group{meeting}; }), tooLong);
}

TEST(DatebookMeeting, AMeetingThatRepeatsIsAMasterWithItsRule) {
    NotesDatebookRecord meeting = weekly(lunch());
    meeting.instances = {may(10), may(17), may(24)};
    meeting.deletions = {may(17)};
    const Group group(meeting);
    EXPECT_EQ(group.tags(), Tags{0});
    EXPECT_FALSE(group.spread);
    EXPECT_EQ(group.at(0).repeat().deviceType(), 2);
    EXPECT_EQ(group.at(0).repeat().daysOfWeek(), 32);
    EXPECT_NE(&group.at(0).repeat(), meeting.repeat.get());
    EXPECT_EQ(group.at(0).exceptions(), Dates{may(17)});
    EXPECT_EQ(group.at(0).date(), may(10));
}

TEST(DatebookMeeting, EveryInstanceOfAnAllDayMeetingSpreads) {
    NotesDatebookRecord meeting = weekly(allDay(4320));
    meeting.instances = {may(10), may(17)};
    meeting.deletions = {may(24)};
    const Group group(meeting);
    EXPECT_EQ(group.tags(), (Tags{0, tenth + 1, tenth + 2, tenth + 8, tenth + 9}));
    EXPECT_TRUE(group.spread);
    EXPECT_EQ(group.at(0).duration().minutes(), 4320);
    EXPECT_EQ(group.at(tenth + 8).date(), may(18));
    EXPECT_FALSE(group.at(tenth + 8).repeat().repeats());
    EXPECT_TRUE(group.at(tenth + 8).exceptions().empty());
}

TEST(DatebookMeeting, InstancesThatOverlapShareTheirDays) {
    NotesDatebookRecord meeting = weekly(allDay(4320));
    meeting.instances = {may(10), may(11), may(15)}; // 10 to 12, 11 to 13, 15 to 17
    const Group group(meeting);
    EXPECT_EQ(group.tags(), (Tags{0, tenth + 1, tenth + 2, tenth + 3, tenth + 6, tenth + 7}));
    EXPECT_EQ(group.at(tenth + 1).date(), may(11)); // also the first day of the second
    EXPECT_EQ(group.at(tenth + 3).date(), may(13));
    EXPECT_EQ(group.at(tenth + 6).date(), may(16));
}

TEST(DatebookMeeting, WithoutInstancesAMasterDoesNotSpread) {
    const Group group(weekly(allDay(4320)));
    EXPECT_EQ(group.tags(), Tags{0});
    EXPECT_FALSE(group.spread);
}

TEST(DatebookMeeting, AChangedInstanceIsARecordOfItsOwn) {
    NotesDatebookRecord meeting = weekly(lunch());
    meeting.hasAlarm = meeting.isPrivate = true;
    meeting.deletions = {may(24)};
    meeting.exceptions = {exception(may(17), may(18), TimeOfDay(14, 0, 0))};
    const Group group(meeting);
    EXPECT_EQ(group.tags(), (Tags{0, tenth + 8}));
    EXPECT_FALSE(group.spread);
    EXPECT_EQ(group.at(0).exceptions(), (Dates{may(17), may(24)}));
    const PalmDatebookRecord& moved = group.at(tenth + 8);
    EXPECT_EQ(moved.date(), may(18));
    EXPECT_EQ(moved.time(), TimeOfDay(14, 0, 0));
    EXPECT_EQ(moved.description(), "Lunch"); // the rest is the meeting's
    EXPECT_EQ(moved.note(), "Bring food");
    EXPECT_EQ(moved.duration().minutes(), 90);
    EXPECT_TRUE(moved.hasAlarm() && moved.isPrivate());
    EXPECT_FALSE(moved.repeat().repeats());
    EXPECT_TRUE(moved.exceptions().empty());
}

TEST(DatebookMeeting, AnExceptionChangesWhatItTells) {
    NotesDatebookRecord meeting = weekly(lunch());
    DatebookException changed = exception(may(17), may(17), TimeOfDay());
    changed.setSubject("Dinner");
    changed.setBody("");
    changed.setAllDay(true);
    changed.setDuration(TimeInterval::fromMinutes(2880));
    meeting.exceptions = {changed};
    const Group group(meeting);
    EXPECT_EQ(group.tags(), (Tags{0, tenth + 7, tenth + 8})); // it spreads by itself
    EXPECT_TRUE(group.spread);
    const PalmDatebookRecord& record = group.at(tenth + 7);
    EXPECT_EQ(record.description(), "Dinner");
    EXPECT_EQ(record.note(), "");
    EXPECT_TRUE(record.allDay());
    EXPECT_EQ(record.duration().minutes(), 2880);
    EXPECT_EQ(group.at(tenth + 8).description(), "Dinner");
    EXPECT_EQ(group.at(tenth + 8).duration().minutes(), 1440);
    EXPECT_EQ(group.at(0).description(), "Lunch");
    EXPECT_EQ(group.at(0).exceptions(), Dates{may(17)}); // the pattern's day, not the further ones
}

TEST(DatebookMeeting, AnExceptionSpreadsFromWhereItIsNow) {
    NotesDatebookRecord meeting = weekly(lunch());
    DatebookException fair = exception(may(24), may(17), TimeOfDay());
    fair.setSubject("Fair");
    fair.setAllDay(true);
    fair.setDuration(TimeInterval::fromDays(3));
    meeting.exceptions = {fair, exception(may(10), may(18), TimeOfDay(9, 0, 0))};
    const Group group(meeting);
    EXPECT_EQ(group.tags(), (Tags{0, tenth + 7, tenth + 8, tenth + 9}));
    EXPECT_EQ(group.at(tenth + 7).duration().minutes(), 4320);
    EXPECT_EQ(group.at(tenth + 8).description(), "Lunch"); // the later one has the day
    EXPECT_EQ(group.at(tenth + 9).description(), "Fair");
    EXPECT_EQ(group.at(0).exceptions(), (Dates{may(10), may(24)}));
}

TEST(DatebookMeeting, AnExceptionReplacesAFurtherDay) {
    NotesDatebookRecord meeting = weekly(allDay(2880));
    meeting.instances = {may(10)};
    DatebookException changed = exception(may(17), may(11), TimeOfDay(8, 0, 0));
    changed.setAllDay(false);
    meeting.exceptions = {changed};
    const Group group(meeting);
    EXPECT_EQ(group.tags(), (Tags{0, tenth + 1}));
    EXPECT_FALSE(group.at(tenth + 1).allDay());
    EXPECT_TRUE(group.spread);
}

TEST(DatebookMeeting, ADroppedExceptionTakesNoDayFromThePattern) {
    NotesDatebookRecord meeting = weekly(lunch());
    meeting.exceptions.insert(exception(may(17), may(20), TimeOfDay(8, 0, 0)));
    meeting.exceptions.insert(exception(may(24), may(20), TimeOfDay(9, 0, 0)));
    const Group group(meeting);
    EXPECT_EQ(group.at(0).exceptions(), Dates{may(17)});
    EXPECT_EQ(group.at(tenth + 10).time(), TimeOfDay(8, 0, 0));
}

TEST(DatebookMeeting, RefusesARuleThatNoRecordCanHold) {
    NotesDatebookRecord meeting = lunch();
    RepeatsMonthlyByDayInfo rule;
    rule.addDaySpec(1, 1);
    meeting.repeat = rule.clone();
    EXPECT_EQ(Group(meeting).tags(), Tags{0});
    rule.addDaySpec(3, 1);
    meeting.repeat = rule.clone();
    EXPECT_EQ(textRaisedBy([&] { Group{meeting}; }), "Not implemented yet.");
}

TEST(DatebookMeeting, RefusesAnInstanceBefore1970) {
    NotesDatebookRecord meeting = weekly(lunch());
    meeting.exceptions = {exception(may(17), Date(1969, 12, 31), TimeOfDay())};
    EXPECT_EQ(textRaisedBy([&] { Group{meeting}; }),
              "Cannot perform conversion; integer value would have lost it's sign.");
}

TEST(DatebookMeeting, TheMasterWinsTheTagOfTheFirstOf1970) {
    NotesDatebookRecord meeting = weekly(lunch());
    meeting.exceptions = {exception(may(17), Date(1970, 1, 1), TimeOfDay())};
    const Group group(meeting);
    EXPECT_EQ(group.tags(), Tags{0});
    EXPECT_TRUE(group.at(0).repeat().repeats());
}

TEST(DatebookMeeting, ARecordBecomesAWholeMeeting) {
    PalmDatebookRecord record;
    record.setDescription("Lunch");
    record.setNote("4142");
    record.setDate(may(10));
    record.setTime(TimeOfDay(12, 30, 0));
    record.setDuration(TimeInterval::fromMinutes(90));
    record.setAlarm(TimeInterval::fromMinutes(5));
    record.setPrivate(true);
    record.setRepeat(RepeatsDailyInfo());
    record.addException(may(17));
    record.addException(may(12));
    PalmRecordGroup group;
    group.set(0, makeCounted<PalmDatebookRecord>(record));
    const CountedPtr<NotesDatebookRecord> meeting = toNotesMeeting(group);
    EXPECT_EQ(meeting->subject, "Lunch");
    EXPECT_EQ(meeting->body, "4142"); // hexadecimal, as the record has it
    EXPECT_EQ(meeting->date, may(10));
    EXPECT_EQ(meeting->time, TimeOfDay(12, 30, 0));
    EXPECT_EQ(meeting->duration.minutes(), 90);
    EXPECT_FALSE(meeting->allDay);
    EXPECT_TRUE(meeting->hasAlarm);
    EXPECT_EQ(meeting->alarmLead.minutes(), 5);
    EXPECT_TRUE(meeting->isPrivate);
    EXPECT_EQ(meeting->repeat->deviceType(), 1);
    EXPECT_NE(meeting->repeat.get(), &record.repeat());
    EXPECT_EQ(meeting->deletions, (Dates{may(12), may(17)}));
    EXPECT_TRUE(meeting->instances.empty());
    EXPECT_TRUE(meeting->exceptions.empty());
}

TEST(DatebookMeeting, APlainRecordBecomesAPlainMeeting) {
    PalmRecordGroup group;
    group.set(0, makeCounted<PalmDatebookRecord>());
    const CountedPtr<NotesDatebookRecord> meeting = toNotesMeeting(group);
    EXPECT_FALSE(meeting->hasAlarm || meeting->isPrivate || meeting->allDay);
    EXPECT_FALSE(meeting->repeat->repeats());
    EXPECT_TRUE(meeting->deletions.empty());
}

TEST(DatebookMeeting, AWholeMeetingComesFromTheMasterAlone) {
    PalmRecordGroup group;
    const auto textFor = [](const char* count) {
        return std::string("Attempt to send to Notes using whole record method when Palm record group "
                           "contains ")
             + count + " records.";
    };
    EXPECT_EQ(textRaisedBy([&] { toNotesMeeting(group); }), textFor("0"));
    group.set(5, makeCounted<PalmDatebookRecord>());
    EXPECT_EQ(textRaisedBy([&] { toNotesMeeting(group); }),
              "The specified tag value (0) was not found in the Palm record group.");
    group.set(0, makeCounted<PalmDatebookRecord>());
    EXPECT_EQ(textRaisedBy([&] { toNotesMeeting(group); }), textFor("2"));
    group.set(5, nullptr); // a member too
    EXPECT_EQ(textRaisedBy([&] { toNotesMeeting(group); }), textFor("2"));
}

TEST(DatebookMeeting, RefusesARecordOfAnotherClass) {
    PalmRecordGroup group;
    group.set(0, makeCounted<PalmDummyRecord>());
    EXPECT_THROW(toNotesMeeting(group), BadPalmRecord);
    group.set(0, nullptr);
    EXPECT_THROW(toNotesMeeting(group), BadPalmRecord);
}

} // namespace
} // namespace tsr
