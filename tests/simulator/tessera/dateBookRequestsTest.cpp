#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tessera/Meeting.h"
#include "tessera/RequestRefused.h"
#include "tessera/replicationRequests.h"

namespace tsr {
namespace {

using namespace std::chrono;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr std::int64_t hour = 3600;
constexpr std::int64_t day = 24 * hour;
constexpr std::int64_t midnight = 20780 * day; // 2026-11-23, a Monday
constexpr sys_days monday{days(20780)};

// Midnights in seconds since 1993: of Monday, and of the Sunday behind it.
const std::string firstDay = "1069545600";
const std::string lastDay = "1070064000";

const std::string noDbid(16, '0');
const std::string noUnid(32, '0');

constexpr std::uint32_t info = 80;
constexpr std::uint32_t countAnomalies = 90;
constexpr std::uint32_t fetchDeleted = 93;
constexpr std::uint32_t fetchWanted = 95;
constexpr std::uint32_t countToReceive = 88;
constexpr std::uint32_t receive = 98;
constexpr std::uint32_t sendAnomaly = 96;
constexpr std::uint32_t send = 99;

const Application& dateBook() {
    for (const Application& application : applications()) {
        if (application.documentKind == std::string(meetingKind)) return application;
    }
    throw std::runtime_error("there is no Date Book");
}

class DateBookRequestsTest : public ::testing::Test {
protected:
    DateBookRequestsTest() {
        User user;
        user.name = "Ann";
        user.zone = ZoneRule("CET-1CEST,M3.5.0,M10.5.0/3");
        store.addUser(user, "");
        session.userId = store.findUser("Ann")->id;
        calendar = store.mailDatabase(*session.userId);
    }

    std::vector<std::string> ask(std::uint32_t code, const std::vector<std::string>& strings) {
        for (const Route& route : replicationRoutes(dateBook())) {
            if (route.code == code) return route.answer({store, session, 0, strings, faults});
        }
        throw std::runtime_error("no such request");
    }

    std::string add(const Meeting& meeting) {
        return store.addDocument(calendar.id, meetingKind, toProperties(meeting)).unid;
    }
    std::string addOnce(std::int64_t localStart) {
        Meeting meeting;
        setLocalStart(meeting, localStart, store.findUser("Ann")->zone);
        return add(meeting);
    }

    // Daily at 10:00 from Monday on; Wednesday's is an hour later.
    std::string addDaily() {
        Meeting meeting{"Team", midnight + 9 * hour, 60, false};
        meeting.pattern.emplace().start = midnight + 10 * hour;
        EventException later;
        later.patternDate = monday + days(2);
        later.start = midnight + 2 * day + 11 * hour;
        meeting.pattern->exceptions = {later};
        return add(meeting);
    }
    void changeInNotes(const std::string& unid, const std::string& subject) {
        Properties properties = store.findDocument(calendar.id, unid)->properties;
        properties["0037001F"] = {subject};
        store.changeDocument(calendar.id, unid, properties);
    }

    std::vector<std::string> listed(const std::string& unid, bool modified) {
        return {calendar.dbid, unid, "1", modified ? "2" : "1"};
    }
    void inform(const std::string& rule, const std::vector<std::string>& known) {
        std::vector<std::string> strings{"1069545600", rule, firstDay, lastDay};
        strings.insert(strings.end(), known.begin(), known.end());
        token = ask(info, strings).at(0);
    }

    std::vector<std::string> sendItem(const std::string& dbid, const std::string& unid,
                                      const std::vector<std::string>& properties,
                                      const std::string& differences = "1") {
        std::vector<std::string> strings{token, dbid, unid, "", "", firstDay, lastDay, differences};
        strings.insert(strings.end(), properties.begin(), properties.end());
        return ask(send, strings);
    }

    Meeting meetingOf(const std::string& unid) {
        return toMeeting(*store.findDocument(calendar.id, unid)).value();
    }
    std::vector<std::string> unids() {
        std::vector<std::string> unids;
        for (const auto& version : store.versions(calendar.id, meetingKind)) unids.push_back(version.unid);
        return unids;
    }

    Store store = Store::inMemory();
    SessionState session;
    FaultPlan faults;
    UserDatabase calendar;
    std::string token;
};

const std::vector<std::string> wholeMeeting{
    "#Differences=0", "00170041=",  "0037001F=Lunch",  "420D0040=1069588800",       "42130003=30",
    "42150003=0",     "45030002=0", "DeletionCount=0", "PatternStartDate=223998540"};

// The instance of Wednesday, 2880 minutes behind Monday's midnight, is at 14:00, which is 13:00 UTC.
const std::vector<std::string> movedWednesday{"#Differences=1",
                                              "DeletionCount=0",
                                              "Exception.0.AllDay=0",
                                              "Exception.0.Body=",
                                              "Exception.0.Date=224001420",
                                              "Exception.0.Duration=60",
                                              "Exception.0.PatternDate=224000640",
                                              "Exception.0.Subject=Team",
                                              "ExceptionCount=1",
                                              "ExceptionCount=1"};

TEST_F(DateBookRequestsTest, TakesANewMeetingBehindFiveStrings) {
    const auto strings = sendItem(noDbid, noUnid, wholeMeeting, "0");
    ASSERT_THAT(unids(), SizeIs(1));
    EXPECT_THAT(strings, ElementsAre(calendar.dbid, unids()[0], "1"));
    EXPECT_EQ(meetingOf(unids()[0]).subject, "Lunch");
    EXPECT_EQ(meetingOf(unids()[0]).start, midnight + 12 * hour);
}

TEST_F(DateBookRequestsTest, GivesMeetingsOnTheDaysOfTheWindow) {
    addOnce(midnight - 60 * 60);                 // to midnight
    const std::string first = addOnce(midnight); // Sunday 23:00 UTC
    const std::string last = addOnce(midnight + 7 * day - 60);
    addOnce(midnight + 7 * day);
    inform("C", {});
    EXPECT_THAT(ask(countToReceive, {token}), ElementsAre("2"));
    EXPECT_THAT(ask(receive, {token, "0", "1"}), Contains("UNID=" + first));
    EXPECT_THAT(ask(receive, {token, "1", "1"}), Contains("UNID=" + last));
}

TEST_F(DateBookRequestsTest, GivesTheInstancesOfTheWindow) {
    addDaily();
    inform("C", {});
    const auto strings = ask(receive, {token, "0", "1"});
    EXPECT_THAT(strings, Contains("InstanceCount=6"));            // seven days without the changed one
    EXPECT_THAT(strings, Contains("Instance.2.Date=224002680"));  // Thursday at 10:00
    EXPECT_THAT(strings, Contains("Exception.1.Date=224001300")); // Wednesday at 11:00
}

TEST_F(DateBookRequestsTest, LeavesMeetingsOutsideTheWindowThatTheHandheldHasNotChanged) {
    const std::string old = addOnce(midnight - 30 * day);
    const std::string changed = addOnce(midnight - 30 * day);
    changeInNotes(changed, "New");
    std::vector<std::string> known = listed(old, true);
    for (const std::string& text : listed(changed, false)) known.push_back(text);
    inform("C", known);
    EXPECT_THAT(ask(countToReceive, {token}), ElementsAre("0"));
    // It may have come from there into the window.
    EXPECT_THAT(ask(fetchWanted, {token, "0", "9"}), ElementsAre("1", calendar.dbid, old));
    EXPECT_THAT(ask(fetchDeleted, {token, "0", "9"}), ElementsAre("0"));
    EXPECT_THAT(ask(countAnomalies, {token}), ElementsAre("0"));
    store.deleteDocument(calendar.id, old);
    inform("C", known);
    EXPECT_THAT(ask(fetchDeleted, {token, "0", "9"}), ElementsAre("1", calendar.dbid, old));
}

TEST_F(DateBookRequestsTest, RefusesAWindowThatIsNone) {
    EXPECT_THROW(ask(info, {"0", "C", "", ""}), RequestRefused);
    EXPECT_THROW(ask(info, {"0", "C", "0", "-1"}), RequestRefused);
}

TEST_F(DateBookRequestsTest, AppliesDifferences) {
    const std::string unid = addDaily();
    inform("C", listed(unid, true));
    EXPECT_THAT(ask(fetchWanted, {token, "0", "9"}), ElementsAre("1", calendar.dbid, unid));
    EXPECT_THAT(sendItem(calendar.dbid, unid, movedWednesday), ElementsAre(calendar.dbid, unid, "2"));
    const auto exceptions = meetingOf(unid).pattern->exceptions;
    ASSERT_THAT(exceptions, SizeIs(1));
    EXPECT_EQ(exceptions[0].start, midnight + 2 * day + 14 * hour);
    EXPECT_THAT(ask(countToReceive, {token}), ElementsAre("0"));
}

TEST_F(DateBookRequestsTest, DeletesAKilledMeeting) {
    const std::string unid = addDaily();
    inform("C", listed(unid, true));
    EXPECT_THAT(sendItem(calendar.dbid, unid,
                         {"#Differences=1", "DeletionCount=0", "Exception.0.Kill=Yes", "ExceptionCount=0"}),
                ElementsAre(calendar.dbid, unid, "1"));
    EXPECT_THAT(unids(), IsEmpty());
    EXPECT_THAT(store.deletedUnids(calendar.id), ElementsAre(unid));
}

TEST_F(DateBookRequestsTest, RefusesDifferencesOfNothing) {
    EXPECT_THROW(sendItem(noDbid, noUnid, movedWednesday), RequestRefused);
    const std::string unid = addDaily();
    inform("C", listed(unid, true));
    store.deleteDocument(calendar.id, unid);
    EXPECT_THROW(sendItem(calendar.dbid, unid, movedWednesday), RequestRefused);
}

// The handheld's change is in, and the handheld is given that of Notes with it.
TEST_F(DateBookRequestsTest, MergesDifferencesInAConflictUnderC) {
    const std::string unid = addDaily();
    changeInNotes(unid, "Renamed");
    inform("C", listed(unid, true));
    EXPECT_THAT(sendItem(calendar.dbid, unid, movedWednesday),
                ElementsAre(calendar.dbid, unid, "1")); // until it has been received
    EXPECT_EQ(meetingOf(unid).subject, "Renamed");
    EXPECT_EQ(meetingOf(unid).pattern->exceptions[0].start, midnight + 2 * day + 14 * hour);
    EXPECT_THAT(ask(countToReceive, {token}), ElementsAre("1"));
    EXPECT_THAT(ask(receive, {token, "0", "1"}), Contains("SeqNum=3"));
}

TEST_F(DateBookRequestsTest, GivesWhatNotesChangesWhileDifferencesAreOnTheirWay) {
    const std::string unid = addDaily();
    inform("C", listed(unid, true));
    changeInNotes(unid, "Renamed");
    EXPECT_THAT(sendItem(calendar.dbid, unid, movedWednesday), ElementsAre(calendar.dbid, unid, "1"));
    EXPECT_THAT(ask(countToReceive, {token}), ElementsAre("1"));
}

TEST_F(DateBookRequestsTest, RefusesDifferencesThatNotesOvertakesUnderS) {
    const std::string unid = addDaily();
    inform("S", listed(unid, true));
    changeInNotes(unid, "Renamed");
    EXPECT_THROW(sendItem(calendar.dbid, unid, movedWednesday), RequestRefused);
}

// Notes keeps its instance, and the handheld's becomes a meeting of its own.
TEST_F(DateBookRequestsTest, KeepsBothInstancesInAConflictUnderS) {
    const std::string unid = addDaily();
    changeInNotes(unid, "Renamed");
    const auto before = store.findDocument(calendar.id, unid)->properties;
    inform("S", listed(unid, true));
    EXPECT_THAT(ask(countAnomalies, {token}), ElementsAre("1"));
    std::vector<std::string> anomaly{token, calendar.dbid, unid, "0"};
    anomaly.insert(anomaly.end(), movedWednesday.begin(), movedWednesday.end());
    EXPECT_THAT(ask(sendAnomaly, anomaly), ElementsAre(calendar.dbid, unid, "1"));
    EXPECT_EQ(store.findDocument(calendar.id, unid)->properties, before);
    ASSERT_THAT(unids(), SizeIs(2));
    EXPECT_EQ(meetingOf(unids()[1]).start, midnight + 2 * day + 13 * hour);
    EXPECT_FALSE(meetingOf(unids()[1]).pattern);
    EXPECT_THAT(ask(countToReceive, {token}), ElementsAre("2"));
    EXPECT_THROW(ask(sendAnomaly, anomaly), RequestRefused); // it was asked for once

    // A session that broke off sends the same once more.
    session.newDocuments.clear();
    inform("S", listed(unid, true));
    anomaly[0] = token;
    ask(sendAnomaly, anomaly);
    EXPECT_THAT(unids(), SizeIs(2));
}

TEST_F(DateBookRequestsTest, MakesAnAnomalyOfAWholeMeeting) {
    const std::string unid = addOnce(midnight);
    changeInNotes(unid, "Renamed");
    inform("S", listed(unid, true));
    std::vector<std::string> anomaly{token, calendar.dbid, unid, "0"};
    anomaly.insert(anomaly.end(), wholeMeeting.begin(), wholeMeeting.end());
    const auto strings = ask(sendAnomaly, anomaly);
    ASSERT_THAT(unids(), SizeIs(2));
    EXPECT_THAT(strings, ElementsAre(calendar.dbid, unids()[1], "1")); // the replaced one isn't named
    EXPECT_EQ(meetingOf(unids()[1]).subject, "Lunch");
    EXPECT_EQ(meetingOf(unid).subject, "Renamed");
}

TEST_F(DateBookRequestsTest, DoesNotMixMeetingsWithTasksOfTheSameDatabase) {
    store.addDocument(calendar.id, "task", {});
    inform("C", {});
    EXPECT_THAT(ask(countToReceive, {token}), ElementsAre("0"));
}

} // namespace
} // namespace tsr
