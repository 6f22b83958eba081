#include "records/NotesDatebookRecordDiffs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "foundation/signals.h"
#include "records/PalmDatebookRecord.h"
#include "records/PalmDummyRecord.h"
#include "records/PalmMemoRecord.h"
#include "support/errors.h"
#include "support/meetingZones.h"

namespace tsr {
namespace {

using test::minutesSince1601;

// Days from 1970-01-01, and minutes from 1601 to their midnights.
constexpr std::uint32_t feb13 = 11731;       // of 2002
constexpr char feb13Minutes[] = "210967200"; // 194074560 + 11731 * 1440
constexpr std::uint32_t feb14 = 11732;
constexpr char feb14Minutes[] = "210968640";

DatebookExceptionDiff lunch(std::uint32_t day) {
    return {.patternDate = Date(2002, 2, day),
            .subject = "Lunch",
            .body = "6d656e75",
            .allDay = false,
            .date = Date(2002, 2, 20),
            .time = TimeOfDay(12, 30, 0),
            .duration = TimeInterval::fromMinutes(45)};
}

NotesItem itemOf(const NotesDatebookRecordDiffs& differences, const TimeZone& zone = TimeZone()) {
    NotesItem item;
    differences.addTo(item, zone);
    return item;
}

CountedPtr<PalmDatebookRecord> instance(const std::string& description) {
    auto record = makeCounted<PalmDatebookRecord>();
    record->setDescription(description);
    record->setNote("6d656e75");
    record->setDate(Date(2002, 2, 20));
    record->setTime(TimeOfDay(12, 30, 0));
    record->setDuration(TimeInterval::fromMinutes(45));
    return record;
}

TEST(NotesDatebookRecordDiffs, OfAnEmptyGroupSayNothing) {
    const auto differences = toNotesDifferences(PalmRecordGroup());
    EXPECT_EQ(itemOf(*differences),
              (NotesItem{{"#Differences", {"1"}}, {"DeletionCount", {"0"}}, {"ExceptionCount", {"0"}}}));
    EXPECT_EQ(differences->description(), "< Unknown >");
}

TEST(NotesDatebookRecordDiffs, OfTheMasterKillTheMeeting) {
    const NotesItem killed{{"#Differences", {"1"}},
                           {"DeletionCount", {"0"}},
                           {"Exception.0.Kill", {"Yes"}},
                           {"ExceptionCount", {"0"}}};
    PalmRecordGroup group;
    group.set(0, nullptr);
    EXPECT_EQ(itemOf(*toNotesDifferences(group)), killed);
    group.set(0, instance("Lunch")); // whatever it holds
    EXPECT_EQ(itemOf(*toNotesDifferences(group)), killed);
    group.set(0, makeCounted<PalmDummyRecord>());
    EXPECT_EQ(itemOf(*toNotesDifferences(group)), killed);
}

TEST(NotesDatebookRecordDiffs, OfANullMemberDeleteItsDay) {
    PalmRecordGroup group;
    group.set(feb14, nullptr);
    group.set(feb13, nullptr);
    const auto differences = toNotesDifferences(group);
    EXPECT_EQ(itemOf(*differences), (NotesItem{{"#Differences", {"1"}},
                                               {"Deletion.0.OriginalDate", {feb13Minutes}},
                                               {"Deletion.1.OriginalDate", {feb14Minutes}},
                                               {"DeletionCount", {"2"}},
                                               {"ExceptionCount", {"0"}}}));
    EXPECT_EQ(differences->description(), "< Unknown >"); // there is no exception
}

TEST(NotesDatebookRecordDiffs, OfAMemberChangeItsInstance) {
    PalmRecordGroup group;
    group.set(feb13, instance("Lunch"));
    const auto differences = toNotesDifferences(group);
    // 2002-02-20 12:30 UTC: 194074560 + 11738 * 1440 + 750
    EXPECT_EQ(itemOf(*differences), (NotesItem{{"#Differences", {"1"}},
                                               {"DeletionCount", {"0"}},
                                               {"Exception.0.AllDay", {"0"}},
                                               {"Exception.0.Body", {"6d656e75"}},
                                               {"Exception.0.Date", {"210978030"}},
                                               {"Exception.0.Duration", {"45"}},
                                               {"Exception.0.PatternDate", {feb13Minutes}},
                                               {"Exception.0.Subject", {"Lunch"}},
                                               {"ExceptionCount", {"1", "1"}}}));
    EXPECT_EQ(differences->description(), "Lunch");
}

TEST(NotesDatebookRecordDiffs, TellTheirCountOnceMoreForEachException) {
    NotesDatebookRecordDiffs differences;
    differences.addException(lunch(14));
    differences.addException(lunch(13));
    const NotesItem item = itemOf(differences);
    EXPECT_EQ(item.at("ExceptionCount"), (std::vector<std::string>{"2", "2", "2"}));
    EXPECT_EQ(item.at("Exception.0.PatternDate"), std::vector<std::string>{feb13Minutes});
    EXPECT_EQ(item.at("Exception.1.PatternDate"), std::vector<std::string>{feb14Minutes});
    EXPECT_FALSE(hasProperty(item, "Exception.2.PatternDate"));
}

TEST(NotesDatebookRecordDiffs, KeepTheFirstExceptionOfADay) {
    NotesDatebookRecordDiffs differences;
    differences.addException(lunch(13));
    DatebookExceptionDiff dinner = lunch(13);
    dinner.subject = "Dinner";
    differences.addException(dinner);
    EXPECT_EQ(differences.description(), "Lunch");
    EXPECT_EQ(itemOf(differences).at("ExceptionCount").size(), 2u);
}

TEST(NotesDatebookRecordDiffs, AreNamedForTheirFirstException) {
    NotesDatebookRecordDiffs differences;
    DatebookExceptionDiff dinner = lunch(14);
    dinner.subject = "Dinner";
    differences.addException(dinner);
    differences.addException(lunch(13));
    EXPECT_EQ(differences.description(), "Lunch");
}

TEST(NotesDatebookRecordDiffs, GiveAllDaysAMinute) {
    DatebookExceptionDiff holiday = lunch(13);
    holiday.allDay = true;
    NotesDatebookRecordDiffs differences;
    differences.addException(holiday);
    const NotesItem item = itemOf(differences);
    EXPECT_EQ(item.at("Exception.0.AllDay"), std::vector<std::string>{"1"});
    EXPECT_EQ(item.at("Exception.0.Duration"), std::vector<std::string>{"1"});
}

// Days of the pattern are days wherever one is; what an instance has become is a moment.
TEST(NotesDatebookRecordDiffs, UseTheZoneForTheNewDateAlone) {
    NotesDatebookRecordDiffs differences;
    differences.addDeletion(Date(2002, 2, 14));
    differences.addException(lunch(13));
    const NotesItem item = itemOf(differences, TimeZone(-18000)); // five hours west
    EXPECT_EQ(item.at("Deletion.0.OriginalDate"), std::vector<std::string>{feb14Minutes});
    EXPECT_EQ(item.at("Exception.0.PatternDate"), std::vector<std::string>{feb13Minutes});
    EXPECT_EQ(item.at("Exception.0.Date"), std::vector<std::string>{"210978330"}); // 17:30 UTC
}

// Moments of an instance on clocks that change: the later half of a doubled hour cannot be told, and a
// reading that a clock never shows counts as daylight time.
TEST(NotesDatebookRecordDiffs, TellTheNewDateOnTheClockOfItsZone) {
    const struct {
        TimeZone zone;
        DateTime reading;
        std::string moment;
    } rows[] = {
        {test::twoHoursEast(), DateTime(2002, 5, 10, 1, 0, 0), minutesSince1601(2002, 5, 9, 23)},
        {test::halfPastFiveEast(), DateTime(2002, 5, 10, 0, 0, 0), minutesSince1601(2002, 5, 9, 18, 30)},
        {test::halfPastThreeWest(), DateTime(2002, 5, 9, 23, 59, 0), minutesSince1601(2002, 5, 10, 3, 29)},
        {test::northEast(), DateTime(2002, 7, 15, 14, 0, 0), minutesSince1601(2002, 7, 15, 12)},
        {test::northEast(), DateTime(2002, 3, 31, 2, 30, 0), minutesSince1601(2002, 3, 31, 0, 30)},
        {test::northEast(), DateTime(2002, 10, 27, 2, 30, 0), minutesSince1601(2002, 10, 27, 0, 30)},
        {test::northWest(), DateTime(2002, 4, 7, 2, 30, 0), minutesSince1601(2002, 4, 7, 6, 30)},
        {test::northWest(), DateTime(2002, 10, 27, 1, 30, 0), minutesSince1601(2002, 10, 27, 5, 30)},
        {test::southEast(), DateTime(2002, 10, 27, 2, 30, 0), minutesSince1601(2002, 10, 26, 15, 30)},
        {test::southEast(), DateTime(2002, 3, 31, 2, 30, 0), minutesSince1601(2002, 3, 30, 15, 30)},
        {test::southWest(), DateTime(2002, 10, 20, 0, 30, 0), minutesSince1601(2002, 10, 20, 2, 30)},
        {test::southWest(), DateTime(2002, 2, 16, 23, 30, 0), minutesSince1601(2002, 2, 17, 1, 30)},
        {test::halfHourSouth(), DateTime(2002, 10, 27, 2, 15, 0), minutesSince1601(2002, 10, 26, 15, 15)},
        {test::halfHourSouth(), DateTime(2002, 3, 31, 1, 45, 0), minutesSince1601(2002, 3, 30, 14, 45)},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::to_string(row.zone.offset()) + ": " + row.moment);
        DatebookExceptionDiff moved = lunch(13);
        moved.date = row.reading.date();
        moved.time = row.reading.timeOfDay();
        NotesDatebookRecordDiffs differences;
        differences.addException(moved);
        const NotesItem item = itemOf(differences, row.zone);
        EXPECT_EQ(item.at("Exception.0.Date"), std::vector<std::string>{row.moment});
        EXPECT_EQ(item.at("Exception.0.PatternDate"), std::vector<std::string>{feb13Minutes});
    }
}

TEST(NotesDatebookRecordDiffs, CountDaysFrom1970) {
    PalmRecordGroup group;
    group.set(11574, nullptr); // 2001-09-09
    // 194074560 + 11574 * 1440
    EXPECT_EQ(itemOf(*toNotesDifferences(group)).at("Deletion.0.OriginalDate"),
              std::vector<std::string>{"210741120"});
}

TEST(NotesDatebookRecordDiffs, RefuseOtherRecords) {
    PalmRecordGroup group;
    group.set(feb13, makeCounted<PalmDummyRecord>());
    EXPECT_THROW(toNotesDifferences(group), BadPalmRecord);
    group.set(feb13, makeCounted<PalmMemoRecord>());
    EXPECT_THROW(toNotesDifferences(group), BadPalmRecord);
}

TEST(NotesDatebookRecordDiffs, RefuseDatesThatNotesCannotSay) {
    NotesDatebookRecordDiffs early;
    early.addDeletion(Date(1969, 12, 31));
    EXPECT_EQ(test::textRaisedBy([&] { itemOf(early); }),
              "The time stamp value represents a time before the start of UTC.");
    DatebookExceptionDiff odd = lunch(13);
    odd.time = TimeOfDay(12, 30, 1);
    NotesDatebookRecordDiffs differences;
    differences.addException(odd);
    EXPECT_EQ(test::textRaisedBy([&] { itemOf(differences); }),
              "Cannot convert to minutes; 1014208201 seconds is not an exact number of minutes.");

    const char lostSign[] = "Cannot perform conversion; integer value would have lost it's sign.";
    const char truncated[] = "Cannot perform conversion; integer value would have been truncated.";
    for (const auto& [minutes, text] :
         {std::pair(std::int64_t{-1}, lostSign), std::pair(std::int64_t{2147483648}, truncated)}) {
        DatebookExceptionDiff endless = lunch(13);
        endless.duration = TimeInterval::fromMinutes(minutes);
        NotesDatebookRecordDiffs odder;
        odder.addException(endless);
        EXPECT_EQ(test::textRaisedBy([&] { itemOf(odder); }), text);
    }
}

} // namespace
} // namespace tsr
