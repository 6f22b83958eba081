// Whole HotSyncs of the free time of colleagues.

#include "handheld/freeTimeGrid.h"
#include "replication/FreeTimeTest.h"

namespace tsr {
namespace {

using test::noon;
using test::Strings;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::int64_t hour = 3600;
constexpr std::int64_t day = 24 * hour;
constexpr std::int64_t monday = 1012780800; // 2002-02-04 00:00 UTC; the test's clock is at Wednesday noon

// The days of a week record, 96 slots of a quarter of an hour in 12 bytes.
const std::string none = " 00 00 00 00 00 00 00 00 00 00 00 00";
const std::string hours = " 00 00 00 00 0F FF FF FF F0 00 00 00"; // the slots 36 to 67: from 9:00 to 17:00
const std::string withoutNoon =
    " 00 00 00 00 0F FF 0F FF F0 00 00 00";                           // and without 48 to 51: 12:00 to 13:00
const std::string hourLater = " 00 00 00 00 00 FF FF FF FF 00 00 00"; // the slots 40 to 71

const std::string config = "1/1: 00 0E 00"; // 14 days
const std::string ann = "2/3: 00 41 6E 6E 00";

// Of the 14 days from Wednesday the 6th to Tuesday the 19th, Saturdays and Sundays off.
const std::string firstWeek = "C4 44" + none + none + hours + hours + hours + none + none;
const std::string secondWeek = "C4 4B" + hours + hours + hours + hours + hours + none + none;
const std::string thirdWeek = "C4 52" + hours + hours + none + none + none + none + none;

class FreeTimeReplication : public test::FreeTimeTest {
protected:
    FreeTimeReplication() { addAnn(); }

    void addAnn() {
        ann_ = office->addUser("Ann");
        list().add("Ann");
    }

    Strings records() { return contents(database()); }

    // Those of one category as they are, with ids and attributes.
    std::vector<HandheldRecord> recordsOf(std::uint8_t category) {
        std::vector<HandheldRecord> found = database().records().all();
        std::erase_if(found, [category](const auto& each) { return each.category != category; });
        return found;
    }

    // Without the ids of the records: "Ann 2002-02-04", and how many slots are free.
    Strings weeks() {
        Strings lines;
        for (const Colleague& colleague : list().colleagues()) {
            for (const FreeWeek& week : colleague.weeks) {
                lines.push_back(colleague.name + ' ' + dateText(week.start) + ' '
                                + std::to_string(week.free.count()));
            }
        }
        return lines;
    }

    std::int64_t ann_ = 0;
};

// The checksums are those of the 90 bytes: by 0x1021 from 0xFFFF on, the first bit first.
TEST_F(FreeTimeReplication, TheWeeksOfAColleagueCome) {
    addMeeting(ann_, monday + 3 * day + 12 * hour, 60);
    sync();
    EXPECT_THAT(
        records(),
        ElementsAre(config, ann,
                    "3/4: 00 00 00 02 C4 44" + none + none + hours + withoutNoon + hours + none + none,
                    "4/4: 00 00 00 02 " + secondWeek, "5/4: 00 00 00 02 " + thirdWeek,
                    "6/2: 00 00 00 02 03 C4 44 00 00 03 63 D1 C4 4B 00 00 04 3F 55 C4 52 00 00 05 8A D8"));
}

TEST_F(FreeTimeReplication, ASecondSessionChangesNoRecord) {
    sync();
    const Strings first = records();
    const std::vector<HandheldRecord> weeksBefore = recordsOf(4);
    sync();
    EXPECT_EQ(recordsOf(4), weeksBefore);
    // But for the checksums, which are written anew each time.
    EXPECT_EQ(first.back(),
              "6/2: 00 00 00 02 03 C4 44 00 00 03 21 C3 C4 4B 00 00 04 3F 55 C4 52 00 00 05 8A D8");
    EXPECT_EQ(records().back(), "7/2" + first.back().substr(3));
}

TEST_F(FreeTimeReplication, AChangedCalendarBringsTheWeekThatChanged) {
    sync();
    const std::vector<HandheldRecord> before = recordsOf(4);
    const std::string unid = addMeeting(ann_, monday + 8 * day + 9 * hour, 8 * 60); // all Tuesday
    sync();
    EXPECT_THAT(
        records(),
        ElementsAre(config, ann, "3/4: 00 00 00 02 " + firstWeek,
                    "4/4: 00 00 00 02 C4 4B" + hours + none + hours + hours + hours + none + none,
                    "5/4: 00 00 00 02 " + thirdWeek,
                    "7/2: 00 00 00 02 03 C4 44 00 00 03 21 C3 C4 4B 00 00 04 A9 C0 C4 52 00 00 05 8A D8"));
    EXPECT_EQ(recordsOf(4)[0], before[0]);
    EXPECT_EQ(recordsOf(4)[2], before[2]);
    office->store().deleteDocument(office->store().mailDatabase(ann_).id, unid);
    sync();
    EXPECT_EQ(recordsOf(4)[1].data, before[1].data);
}

TEST_F(FreeTimeReplication, AColleagueThatTheServerDoesNotKnowIsTold) {
    list().add("Nobody");
    office->addUser("Bob");
    list().add("Bob");
    hotSync();
    EXPECT_THAT(log(), ElementsAre("19 FreeTime",
                                   "22 ** An error occurred whilst attempting to find free time for user "
                                   "'Nobody'.",
                                   "22 **** There is no user 'Nobody'.", "20 FreeTime"));
    EXPECT_THAT(weeks(), ElementsAre("Ann 2002-02-04 96", "Ann 2002-02-11 160", "Ann 2002-02-18 64",
                                     "Bob 2002-02-04 96", "Bob 2002-02-11 160", "Bob 2002-02-18 64"));
}

TEST_F(FreeTimeReplication, WhoIsTakenOffTheListTakesHisWeeksAlong) {
    sync();
    list().remove("Ann");
    sync();
    EXPECT_THAT(records(), ElementsAre(config, "7/2: 00"));
}

TEST_F(FreeTimeReplication, PastWeeksGoAndLaterOnesComeAsTimePasses) {
    sync();
    setClocks(noon + 7 * day); // from Wednesday the 13th to Tuesday the 26th
    sync();
    EXPECT_THAT(
        records(),
        ElementsAre(config, ann, "4/4: 00 00 00 02 C4 4B" + none + none + hours + hours + hours + none + none,
                    "5/4: 00 00 00 02 C4 52" + hours + hours + hours + hours + hours + none + none,
                    "7/4: 00 00 00 02 C4 59" + hours + hours + none + none + none + none + none,
                    "8/2: 00 00 00 02 03 C4 4B 00 00 04 6A 96 C4 52 00 00 05 8A D2 C4 59 00 00 07 F5 B1"));
}

TEST_F(FreeTimeReplication, WeeksAreThoseOfTheUsersOwnZone) {
    office->setZone(ZoneRule("CET-1"));
    list().setSearchLength(1);
    sync();
    EXPECT_THAT(recordsOf(4), testing::SizeIs(1));
    EXPECT_EQ(records()[2], "3/4: 00 00 00 02 C4 44" + none + none + hourLater + none + none + none + none);
}

TEST_F(FreeTimeReplication, AnApplicationThatNobodyHasStartedIsTold) {
    handheld.databases.erase(FreeTimeDatabase::databaseName);
    hotSync();
    EXPECT_THAT(log(),
                ElementsAre("19 FreeTime", "22 ** An unrecoverable error occurred during pre-replication.",
                            "22 **** Free time search configuration record not found.", "21 FreeTime"));
    EXPECT_THAT(records(), IsEmpty());
}

// In a session that has to take weeks away, to change one and to write others.
TEST_F(FreeTimeReplication, AFailedCallLosesNothing) {
    bool reached = true;
    for (std::uint64_t number = 1; reached; ++number) {
        SCOPED_TRACE(number);
        startAfresh();
        addAnn();
        office->addUser("Bob");
        list().add("Bob");
        sync();
        list().remove("Bob");
        office->addUser("Eve");
        list().add("Eve");
        addMeeting(ann_, monday + 8 * day + 9 * hour, 8 * 60);
        reached = !hotSyncWithFailedCall(number).empty();
        sync();
        ASSERT_THAT(weeks(), ElementsAre("Ann 2002-02-04 96", "Ann 2002-02-11 128", "Ann 2002-02-18 64",
                                         "Eve 2002-02-04 96", "Eve 2002-02-11 160", "Eve 2002-02-18 64"));
        const std::vector<HandheldRecord> before = recordsOf(4);
        sync();
        ASSERT_EQ(recordsOf(4), before);
    }
}

} // namespace
} // namespace tsr
