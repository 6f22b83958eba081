#include "applications/DatebookReplicator.h"

#include "applications/ItemReplicatorTest.h"
#include "foundation/signals.h"
#include "records/NotesDatebookRecord.h"
#include "records/NotesDatebookRecordDiffs.h"
#include "records/PalmDatebookRecord.h"
#include "records/PalmDummyRecord.h"
#include "records/RepeatsMonthlyByDateInfo.h"
#include "support/errors.h"

namespace tsr {
namespace {

using test::bytes;
using test::dbidText;
using test::noDbid;
using test::noUnid;
using test::Strings;
using test::textRaisedBy;
using test::unidA;
using test::unidB;
using test::unidC;
using test::WireAnswer;
using test::WireRequest;
using testing::ElementsAre;
using testing::IsEmpty;

// The handheld's clock and that of the desktop show 2002-02-06 12:34:56, in the zone UTC. In seconds since
// 1993:
const std::string now = "287152496";
const std::string today = "287107200";
const std::string yesterday = "287020800";
const std::string inTwoDays = "287280000";

constexpr std::uint32_t feb14 = 11732; // days from 1970-01-01 to 2002-02-14

TEST(DatebookApplicationTraits, TellsTheDateBookFromTheOthers) {
    const DatebookApplicationTraits traits;
    EXPECT_EQ(traits.displayName, "Date Book");
    EXPECT_EQ(traits.appDbName, "DatebookDB");
    EXPECT_EQ(traits.appDbCreator, 0x64617465u); // date
    EXPECT_EQ(traits.appDbType, 0x44415441u);    // DATA
    EXPECT_EQ(traits.syncDbName, "DatebookSync");
    EXPECT_EQ(traits.syncDbCreator, 0x54535241u); // TSRA
    EXPECT_EQ(traits.syncDbType, 0x44415445u);    // DATE
    EXPECT_EQ(traits.configCategory(), 4);
}

// With what the pipeline alone can reach.
class OpenReplicator : public DatebookReplicator {
public:
    using DatebookReplicator::appInfoToWrite;
    using DatebookReplicator::categoryOfClass;
    using DatebookReplicator::classNames;
    using DatebookReplicator::convertToNotes;
    using DatebookReplicator::convertToPalm;
    using DatebookReplicator::DatebookReplicator;
    using DatebookReplicator::isConfigured;
    using DatebookReplicator::makeNotesRecord;
    using DatebookReplicator::makePalmRecord;
    using DatebookReplicator::sendsWantedInFull;
};

class DatebookReplicatorTest
    : public test::ItemReplicatorTest<DatebookReplicator, DatebookApplicationTraits> {
protected:
    // A server that has and wants nothing.
    static test::Answers quietServer() {
        return {{80, {"token"}}, {90, {"0"}}, {91, {"0"}}, {94, {"0"}},
                {95, {"0"}},     {88, {"0"}}, {92, {"0"}}, {93, {"0"}}};
    }

    // A window from `before` days before today to `after` days after it.
    void configureWindow(const std::string& before, const std::string& after) {
        HandheldDatabase& configuration = *handheld.find("VellumConfig");
        configuration.eraseRecord(3);
        put(configuration, 3, 4, "02 01 00 00 00 " + before + " 00 " + after);
    }

    // A meeting of one hour from 12:00 on 2002-02-06.
    static Strings meeting(const std::string& unid, const Strings& more = {}) {
        Strings strings = {"UNID=" + unid, "DBID=" + dbidText, "SeqNum=4",   "0037001F=Staff",
                           "00170041=",    "42130003=60",      "42150003=0", "420D0040=287150400",
                           "45030002=0",   "00040002=0"};
        strings.insert(strings.end(), more.begin(), more.end());
        return strings;
    }

    // Each Wednesday; that of 2002-02-13 is on 2002-02-14 at 15:00.
    static Strings movedMeeting(const std::string& unid) {
        return meeting(unid, {"Recurs=Week", "DaysOfWeek=8", "Interval=1", "PatternEnd=Forever",
                              "PatternStartDate=210957840", "ExceptionCount=1",
                              "Exception.1.PatternDate=210967200", "Exception.1.Date=210969540"});
    }

    // The same without a change.
    static Strings weeklyMeeting(const std::string& unid) {
        return meeting(unid, {"Recurs=Week", "DaysOfWeek=8", "Interval=1", "PatternEnd=Forever",
                              "PatternStartDate=210957840"});
    }

    // Has the server offer these items, and nothing else.
    void offer(std::vector<Strings> items) {
        answerBy([items = std::move(items)](const WireRequest& request) {
            if (request.code == 88) return WireAnswer{.strings = {std::to_string(items.size())}};
            if (request.code == 98) return WireAnswer{.strings = items.at(std::stoul(request.strings[1]))};
            return answerOf(quietServer(), request);
        });
    }

    // Has the server want item A, and answer it with the number 5.
    void want() {
        auto answers = quietServer();
        answers[94] = {"1"};
        answers[95] = {"1", dbidText, unidA};
        answers[99] = {dbidText, unidA, "5"};
        answerWith(answers);
    }

    OpenReplicator replicator{palm};
};

TEST_F(DatebookReplicatorTest, HasOneClassWithoutACategory) {
    EXPECT_EQ(replicator.classNames(), Strings{"Datebook items"});
    std::uint8_t category = 9;
    EXPECT_FALSE(replicator.categoryOfClass("Datebook items", category));
    EXPECT_EQ(category, 9);
    EXPECT_TRUE(replicator.isConfigured());
    EXPECT_FALSE(replicator.sendsWantedInFull());
    EXPECT_FALSE(replicator.appInfoToWrite());
}

TEST_F(DatebookReplicatorTest, MakesRecordsOfBothForms) {
    PalmRecordBuffer buffer;
    const auto data = bytes("0C 00 0D 00 C4 46 04 00 41 00");
    buffer.appendBytes(data.data(), data.size());
    const auto palmRecord = replicator.makePalmRecord(buffer, true);
    EXPECT_EQ(dynamic_cast<const PalmDatebookRecord&>(*palmRecord).time(), TimeOfDay(12, 0, 0));
    EXPECT_TRUE(palmRecord->archived());
    const auto notes = replicator.makeNotesRecord(
        {{"0037001F", {"Lunch"}}, {"420D0040", {"287150400"}}, {"42130003", {"60"}}});
    EXPECT_EQ(dynamic_cast<const NotesDatebookRecord&>(*notes).time, TimeOfDay(12, 0, 0));
}

TEST_F(DatebookReplicatorTest, ConvertsAMeetingToOneRecord) {
    NotesDatebookRecord notes;
    notes.subject = "Lunch";
    notes.date = Date(2002, 2, 6);
    bool resendWanted = true;
    const PalmRecordGroup group = replicator.convertToPalm(notes, resendWanted);
    EXPECT_FALSE(resendWanted);
    EXPECT_EQ(group.size(), 1u);
    EXPECT_EQ(group.get(0)->description(), "Lunch");
}

TEST_F(DatebookReplicatorTest, WantsAMeetingBackThatItSpreadsOverItsDays) {
    NotesDatebookRecord notes;
    notes.date = Date(2002, 2, 12);
    notes.allDay = true;
    notes.duration = TimeInterval::fromDays(3);
    bool resendWanted = false;
    const PalmRecordGroup group = replicator.convertToPalm(notes, resendWanted);
    EXPECT_TRUE(resendWanted);
    std::vector<std::uint32_t> tags;
    group.tags(tags);
    EXPECT_THAT(tags, ElementsAre(0u, feb14 - 1, feb14));
}

TEST_F(DatebookReplicatorTest, RefusesARuleThatDoesNotFit) {
    NotesDatebookRecord notes;
    notes.repeat = makeCounted<RepeatsMonthlyByDateInfo>(NotesItem{
        {"Interval", {"1"}}, {"PatternEnd", {"Forever"}}, {"DayInMonth.1", {"1"}}, {"DayInMonth.2", {"15"}}});
    bool resendWanted = false;
    EXPECT_EQ(textRaisedBy([&] { replicator.convertToPalm(notes, resendWanted); }), "Not implemented yet.");
}

CountedPtr<PalmDatebookRecord> lunch() {
    auto record = makeCounted<PalmDatebookRecord>();
    record->setDescription("Lunch");
    record->setDate(Date(2002, 2, 6));
    return record;
}

TEST_F(DatebookReplicatorTest, SendsAMeetingWholeWhoseMasterIsThere) {
    PalmRecordGroup group;
    group.set(0, lunch());
    for (const bool wasModified : {true, false}) { // a new record comes without the flag
        const auto notes = replicator.convertToNotes(group, wasModified, 0);
        EXPECT_EQ(dynamic_cast<const NotesDatebookRecord&>(*notes).subject, "Lunch");
    }
}

TEST_F(DatebookReplicatorTest, SendsDifferencesWithoutAMaster) {
    PalmRecordGroup group;
    for (const auto& [tag, present] :
         {std::pair(feb14, true), std::pair(feb14, false), std::pair(0u, false)}) {
        group.set(tag, present ? PalmRecordGroup::Member(lunch()) : nullptr);
        EXPECT_NO_THROW(
            dynamic_cast<const NotesDatebookRecordDiffs&>(*replicator.convertToNotes(group, false, 0)));
    }
}

TEST_F(DatebookReplicatorTest, SendsOnlyASingleRecordWhole) {
    PalmRecordGroup group;
    EXPECT_EQ(
        textRaisedBy([&] { replicator.convertToNotes(group, true, 0); }),
        "Attempt to send to Notes using whole record method when Palm record group contains 0 records.");
    group.set(0, lunch());
    group.set(feb14, nullptr);
    for (const bool wasModified : {true, false}) {
        EXPECT_EQ(
            textRaisedBy([&] { replicator.convertToNotes(group, wasModified, 0); }),
            "Attempt to send to Notes using whole record method when Palm record group contains 2 records.");
    }
}

TEST_F(DatebookReplicatorTest, RefusesARecordThatIsNoMeeting) {
    PalmRecordGroup group;
    group.set(0, makeCounted<PalmDummyRecord>());
    EXPECT_THROW(replicator.convertToNotes(group, false, 0), BadPalmRecord);
}

TEST_F(DatebookReplicatorTest, SendsANewMeetingWithTheWindow) {
    configureWindow("01", "02");
    auto answers = quietServer();
    answers[99] = {dbidText, unidA, "1"};
    serve([answers](const WireRequest& request) { return answerOf(answers, request); });
    configureWindow("01", "02");
    put(database, 1, 0, "0C 00 0D 00 C4 46 04 00 4C 75 6E 63 68 00", 0x40);
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_EQ(server->requests(),
              (std::vector<WireRequest>{
                  server->requests()[0], // the user
                  {7, {}},
                  {99,
                   {"", noDbid, noUnid, "", "", yesterday, inTwoDays, "0", "#Differences=0",
                    "00170041=", "0037001F=Lunch", "420D0040=287150400", "42130003=60", "42150003=0",
                    "45030002=0", "DeletionCount=0", "PatternStartDate=210957840"}},
                  {80, {now, "C", yesterday, inTwoDays, dbidText, unidA, "1", "1"}},
                  {90, {"token"}},
                  {91, {"token", "0", "0"}},
                  {94, {"token"}},
                  {95, {"token", "0", "0"}},
                  {88, {"token"}},
                  {92, {"token"}},
                  {93, {"token", "0", "0"}},
                  {200, {}},
                  {19, {}},
              }));
}

TEST_F(DatebookReplicatorTest, TakesAMovedInstanceAsARecordOfItsOwn) {
    offer({movedMeeting(unidA)});
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_EQ(contents(database),
              (Strings{"1/0: 0C 00 0D 00 C4 46 2C 00 02 00 FF FF 01 08 00 00 00 01 C4 4D 53 74 61 66 66 00",
                       "2/0: 0F 00 10 00 C4 4E 04 00 53 74 61 66 66 00"}));
    answerWith(quietServer());
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_THAT(sent(80), ElementsAre(Strings{now, "C", today, today, dbidText, unidA, "4", "4"}));
}

TEST_F(DatebookReplicatorTest, SendsADeletedInstanceAsADifference) {
    offer({movedMeeting(unidA)});
    EXPECT_THAT(run(), IsEmpty());
    ASSERT_TRUE(database.deleteRecord(2));
    want();
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_THAT(sent(80), ElementsAre(Strings{now, "C", today, today, dbidText, unidA, "4", "5"}));
    EXPECT_THAT(sent(99), ElementsAre(Strings{"token", dbidText, unidA, "", "", today, today, "1",
                                              "#Differences=1", "Deletion.0.OriginalDate=210968640",
                                              "DeletionCount=1", "ExceptionCount=0"}));
}

TEST_F(DatebookReplicatorTest, SendsAChangedInstanceAsADifference) {
    offer({movedMeeting(unidA)});
    EXPECT_THAT(run(), IsEmpty());
    ASSERT_TRUE(database.editRecord(2, bytes("10 00 11 00 C4 4E 04 00 54 65 61 00"))); // 16:00, "Tea"
    want();
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_THAT(sent(99),
                ElementsAre(Strings{"token", dbidText, unidA, "", "", today, today, "1", "#Differences=1",
                                    "DeletionCount=0", "Exception.0.AllDay=0",
                                    "Exception.0.Body=", "Exception.0.Date=210969600",
                                    "Exception.0.Duration=60", "Exception.0.PatternDate=210968640",
                                    "Exception.0.Subject=Tea", "ExceptionCount=1", "ExceptionCount=1"}));
}

// 2002-02-13 moves on to 2002-02-15, and then back to its day.
TEST_F(DatebookReplicatorTest, AnInstanceThatNotesMovesGetsAnotherRecord) {
    const char moved[] = "1/0: 0C 00 0D 00 C4 46 2C 00 02 00 FF FF 01 08 00 00 00 01 C4 4D 53 74 61 66 66 00";
    const char unmoved[] = "1/0: 0C 00 0D 00 C4 46 24 00 02 00 FF FF 01 08 00 00 53 74 61 66 66 00";
    const char on14th[] = "/0: 0F 00 10 00 C4 4E 04 00 53 74 61 66 66 00";
    const char on15th[] = "/0: 0F 00 10 00 C4 4F 04 00 53 74 61 66 66 00";
    offer({movedMeeting(unidA)});
    EXPECT_THAT(run(), IsEmpty());
    Strings movedOn = movedMeeting(unidA);
    ASSERT_EQ(movedOn.back(), "Exception.1.Date=210969540");
    movedOn.back() = "Exception.1.Date=210970980"; // a day, 1,440 minutes, later
    offer({movedOn});
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_THAT(contents(database), ElementsAre(moved, testing::EndsWith(on15th)));
    offer({weeklyMeeting(unidA)});
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_THAT(contents(database), ElementsAre(unmoved));
    offer({movedMeeting(unidA)});
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_THAT(contents(database), ElementsAre(moved, testing::EndsWith(on14th)));
}

TEST_F(DatebookReplicatorTest, AMeetingThatNotesDeletedGoesWithAllItsRecords) {
    offer({movedMeeting(unidA), meeting(unidB)});
    EXPECT_THAT(run(), IsEmpty());
    ASSERT_EQ(contents(database).size(), 3u);
    auto answers = quietServer();
    answers[92] = {"1"};
    answers[93] = {"1", dbidText, unidA};
    answerWith(answers);
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_EQ(contents(database), Strings{"3/0: 0C 00 0D 00 C4 46 04 00 53 74 61 66 66 00"});
}

// From 2002-02-12 on for two days. A change of the second day alone is one of the whole meeting, which is
// given up; a moved instance is told as a difference, see above.
TEST_F(DatebookReplicatorTest, AMeetingThatWasSpreadGoesBackAsAWhole) {
    offer({{"UNID=" + unidA, "DBID=" + dbidText, "SeqNum=4", "0037001F=Staff", "42130003=2880", "42150003=1",
            "420D0040=287625600", "00040002=0"}});
    EXPECT_THAT(run(), IsEmpty());
    ASSERT_EQ(contents(database), (Strings{"1/0: FF FF FF FF C4 4C 04 00 53 74 61 66 66 00",
                                           "2/0: FF FF FF FF C4 4D 04 00 53 74 61 66 66 00"}));
    ASSERT_TRUE(database.editRecord(2, bytes("FF FF FF FF C4 4D 04 00 54 65 61 00")));
    answerBy([items = 0](const WireRequest& request) mutable {
        if (request.code == 89) return WireAnswer{.strings = {dbidText, unidA}};
        if (request.code == 99) return WireAnswer{.strings = {dbidText, ++items == 1 ? unidB : unidC, "1"}};
        return answerOf(quietServer(), request);
    });
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_THAT(sent(89), ElementsAre(Strings{dbidText, unidA}));
    ASSERT_EQ(sent(99).size(), 2u);
    EXPECT_THAT(sent(99)[0], testing::IsSupersetOf({"#Differences=0", "0037001F=Staff"}));
    EXPECT_THAT(sent(99)[1], testing::IsSupersetOf({"#Differences=0", "0037001F=Tea"}));
}

TEST_F(DatebookReplicatorTest, AnAnomalyComesBackUnderTheIdentityOfItsAnswer) {
    offer({meeting(unidA)});
    EXPECT_THAT(run(), IsEmpty());
    ASSERT_TRUE(database.editRecord(1, bytes("0C 00 0D 00 C4 46 04 00 54 65 61 00")));
    auto answers = quietServer();
    answers[90] = {"1"};
    answers[91] = {"1", dbidText, unidA};
    answers[96] = {dbidText, unidB, "7"}; // no string between the identity and the number
    answerWith(answers);
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_THAT(sent(96), ElementsAre(Strings{"token", dbidText, unidA, "0", "#Differences=0",
                                              "00170041=", "0037001F=Tea", "420D0040=287150400",
                                              "42130003=60", "42150003=0", "45030002=0", "DeletionCount=0",
                                              "PatternStartDate=210957840"}));
    EXPECT_THAT(sent(99), IsEmpty());
    answerWith(quietServer());
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_THAT(sent(80), ElementsAre(Strings{now, "C", today, today, dbidText, unidB, "7", "7"}));
}

// Midnight passes while the first item is sent.
TEST_F(DatebookReplicatorTest, WorksOutItsWindowForEachUse) {
    serve([](const WireRequest& request) {
        if (request.code != 99) return answerOf(quietServer(), request);
        test::setClock(1012998896 + 86400);
        return WireAnswer{.strings = {dbidText, unidA, "1"}};
    });
    configureWindow("01", "01");
    put(database, 1, 0, "0C 00 0D 00 C4 46 04 00 4C 75 6E 63 68 00", 0x40);
    EXPECT_THAT(run(), IsEmpty());
    const std::string tomorrow = "287193600";
    ASSERT_EQ(sent(99).size(), 1u);
    EXPECT_EQ(sent(99)[0][5], yesterday);
    EXPECT_EQ(sent(99)[0][6], tomorrow);
    ASSERT_EQ(sent(80).size(), 1u);
    EXPECT_EQ(sent(80)[0][2], today);
    EXPECT_EQ(sent(80)[0][3], inTwoDays);
}

// From 10:00 to 9:59. What it raises is no error, and so nothing takes it for a failure of one record.
TEST_F(DatebookReplicatorTest, ARecordThatEndsBeforeItStartsEndsTheSession) {
    answerWith(quietServer());
    put(database, 1, 0, "0A 00 09 3B C4 AA 00 00", 0x40);
    put(database, 2, 0, "0C 00 0D 00 C4 46 04 00 4C 75 6E 63 68 00", 0x40);
    hotSyncLogClear();
    DatebookReplicator(makeCounted<PalmProxy>(nullptr)).run(ReplicationType::Normal);
    std::string chain;
    for (const auto& [text, activity] : logEntries()) chain += text + '\n';
    EXPECT_THAT(chain, testing::HasSubstr("** An exception of unknown type was caught.\n"));
    EXPECT_THAT(sent(99), IsEmpty());
    EXPECT_EQ(contents(database).size(), 2u);
}

// The master and its instances come back as meetings of their own.
TEST_F(DatebookReplicatorTest, GivesUpARepeatingMeetingWhoseMasterWasEdited) {
    offer({movedMeeting(unidA)});
    EXPECT_THAT(run(), IsEmpty());
    ASSERT_TRUE(database.editRecord(
        1, bytes("0C 00 0D 00 C4 46 2C 00 02 00 FF FF 01 08 00 00 00 01 C4 4D 54 65 61 00")));
    answerBy([items = 0](const WireRequest& request) mutable {
        if (request.code == 89) return WireAnswer{.strings = {dbidText, unidA}};
        if (request.code == 99) return WireAnswer{.strings = {dbidText, ++items == 1 ? unidB : unidC, "1"}};
        return answerOf(quietServer(), request);
    });
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_THAT(sent(89), ElementsAre(Strings{dbidText, unidA}));
    ASSERT_EQ(sent(99).size(), 2u);
    EXPECT_THAT(sent(99)[0], testing::IsSupersetOf({"#Differences=0", "0037001F=Tea", "Recurs=Week",
                                                    "DeletionCount=1", "Deletion.0.OriginalDate=210967920"}));
    EXPECT_THAT(sent(99)[1],
                testing::IsSupersetOf({"#Differences=0", "0037001F=Staff", "420D0040=287852400"}));
    EXPECT_THAT(sent(80), ElementsAre(Strings{now, "C", today, today, dbidText, unidB, "1", "1", dbidText,
                                              unidC, "1", "1"}));
}

TEST_F(DatebookReplicatorTest, RefusesAMeetingThatDoesNotFitAlone) {
    const Strings unfit = meeting(unidA, {"Recurs=Month", "Interval=1", "PatternEnd=Forever",
                                          "DayInMonth.1=1", "DayInMonth.2=15", "PatternStartDate=210957840"});
    const Strings rare =
        meeting(unidB, {"Recurs=Day", "Interval=256", "PatternEnd=Forever", "PatternStartDate=210957840"});
    offer({unfit, rare, meeting(unidC)});
    const std::string ofA = "DBID " + dbidText + " and UNID " + unidA;
    const std::string ofB = "DBID " + dbidText + " and UNID " + unidB;
    EXPECT_THAT(
        run(), ElementsAre("** Unable to convert Notes record with " + ofA + " to Palm record group.",
                           "**** Not implemented yet.",
                           "** Unable to write Palm record group for Notes record with " + ofB + ".",
                           "**** The repeat interval (256) of the meeting with subject 'Staff' is unsuitable "
                           "for the Palm device."));
    EXPECT_EQ(contents(database), Strings{"1/0: 0C 00 0D 00 C4 46 04 00 53 74 61 66 66 00"});
}

// Hands the conversion a record that isn't the meeting's.
class CrowdedReplicator : public DatebookReplicator {
public:
    using DatebookReplicator::DatebookReplicator;

protected:
    CountedPtr<NotesApplicationRecord> convertToNotes(const PalmRecordGroup& group, bool wasModified,
                                                      int reserved) override {
        PalmRecordGroup crowded = group;
        crowded.set(feb14, lunch());
        return DatebookReplicator::convertToNotes(crowded, wasModified, reserved);
    }
};

TEST_F(DatebookReplicatorTest, AGroupThatCannotBeSentWholeEndsTheSession) {
    offer({meeting(unidA)});
    EXPECT_THAT(run(), IsEmpty());
    ASSERT_TRUE(database.editRecord(1, bytes("0C 00 0D 00 C4 46 04 00 54 65 61 00")));
    want();
    hotSyncLogClear();
    CrowdedReplicator(makeCounted<PalmProxy>(nullptr)).run(ReplicationType::Normal);
    std::string chain;
    for (const auto& [text, activity] : logEntries()) chain += text + '\n';
    EXPECT_THAT(chain, testing::HasSubstr("** An error occurred whilst replicating items of class "
                                          "'Datebook items'.\n"
                                          "**** An unrecoverable error occurred whilst sending items to the "
                                          "Tessera Server.\n"
                                          "****** Attempt to send to Notes using whole record method when "
                                          "Palm record group contains 2 records.\n"));
    EXPECT_THAT(sent(99), IsEmpty());
}

TEST_F(DatebookReplicatorTest, TakesTodayForAWindowThatNobodyChose) {
    answerWith(quietServer());
    handheld.find("VellumConfig")->eraseRecord(3);
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_THAT(sent(80), ElementsAre(Strings{now, "C", today, today}));
}

} // namespace
} // namespace tsr
