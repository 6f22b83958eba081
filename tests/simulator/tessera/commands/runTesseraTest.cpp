#include "tessera/commands/runTessera.h"

#include <condition_variable>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <sstream>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "RawClient.h"
#include "commands/RunTesseraTest.h"
#include "tessera/Meeting.h"
#include "tessera/Memo.h"
#include "tessera/Store.h"
#include "tessera/passwords.h"

namespace tsr {
namespace {

using test::bodyOf;
using test::RawClient;
using test::requestFrame;
using test::resultOf;
using ::testing::HasSubstr;
using ::testing::Not;

TEST_F(RunTesseraTest, ExplainsItself) {
    for (const std::vector<std::string>& arguments : {std::vector<std::string>{"--help"},
                                                      {"serve", "--help"},
                                                      {"user", "add", "--help"},
                                                      {"list", "--help"},
                                                      {"import", "--help"}}) {
        EXPECT_EQ(run(arguments), 0);
        EXPECT_THAT(out, HasSubstr("Usage"));
        EXPECT_EQ(err, "");
    }
    EXPECT_FALSE(std::filesystem::exists(file));
}

TEST_F(RunTesseraTest, RefusesWrongArguments) {
    expectFailure(2, {}, "subcommand");
    expectFailure(2, {"frobnicate"}, "tessera: ");
    expectFailure(2, {"user", "add"}, "NAME is required");
    expectFailure(2, {"user", "add", "Ann", "--zone", "Nowhere/Land"},
                  "'Nowhere/Land' is neither a time zone");
    expectFailure(2, {"user", "add", "Ann", "--password", "secret"},
                  "tessera: "); // never among the arguments
    expectFailure(2, {"user", "add", "Ann", "--hours", "9-5"}, "'9' is not a time of day");
    expectFailure(2, {"serve", "--port", "65536"}, "--port");
    expectFailure(2, {"serve", "--clock", "noon"}, "'noon' is not a date and time");
    expectFailure(2, {"serve", "--max-connections", "0"}, "--max-connections");
    expectFailure(2, {"serve", "--fail-request", "1,x"}, "--fail-request");
    expectFailure(2, {"serve", "--lose-answer", "0"}, "--lose-answer");
    EXPECT_FALSE(std::filesystem::exists(file));
}

TEST_F(RunTesseraTest, NeedsAStoreForMostCommands) {
    for (const std::vector<std::string>& arguments : {std::vector<std::string>{"user", "list"},
                                                      {"user", "edit", "Ann"},
                                                      {"user", "delete", "Ann"},
                                                      {"list", "meetings", "--user", "Ann"},
                                                      {"export"}}) {
        expectFailure(1, arguments, "there is no store");
    }
    EXPECT_FALSE(std::filesystem::exists(file));
}

TEST_F(RunTesseraTest, TakesPasswordsFromAFile) {
    EXPECT_EQ(
        run({"user", "add", "Ann", "--password-file", writeFile("password", "from file\r\nnot this\n")}), 0);
    EXPECT_EQ(out, "added user Ann\n");
    Store store(file);
    EXPECT_TRUE(passwordMatches(store.passwordHash(store.findUser("Ann")->id), "from file"));
}

TEST_F(RunTesseraTest, TakesPasswordsFromTheEnvironment) {
    ::setenv("TESSERA_PASSWORD", "from environment", 1);
    EXPECT_EQ(run({"user", "add", "Ann"}), 0);
    Store store(file);
    EXPECT_TRUE(passwordMatches(store.passwordHash(store.findUser("Ann")->id), "from environment"));
    ::unsetenv("TESSERA_PASSWORD");
}

TEST_F(RunTesseraTest, AsksForPasswordsAndNeverPrintsThem) {
    EXPECT_EQ(run({"user", "add", "Ann"}, "typed\n"), 0);
    EXPECT_EQ(err, "Password for Ann: \n");
    EXPECT_THAT(out, Not(HasSubstr("typed")));
    Store store(file);
    EXPECT_TRUE(passwordMatches(store.passwordHash(store.findUser("Ann")->id), "typed"));
}

TEST_F(RunTesseraTest, NeedsAPassword) {
    EXPECT_EQ(run({"user", "add", "Ann"}, ""), 1);
    EXPECT_THAT(err, HasSubstr("a user needs a password"));
    expectFailure(1, {"user", "add", "Ann", "--password-file", folder + "/none"},
                  "cannot read the password file");
    expectFailure(1, {"user", "add", "Ann", "--password-file", writeFile("empty", "\n")}, "needs a password");
    expectFailure(1, {"user", "add", "Ann", "--password-file", writeFile("odd", "a\xFF\n")},
                  "cannot be sent");
    EXPECT_FALSE(std::filesystem::exists(file));
}

TEST_F(RunTesseraTest, AddsEditsListsAndDeletesUsers) {
    addUser("Bob", "UTC0");
    EXPECT_EQ(run({"user", "add", "Ann", "--zone", "CET-1", "--hours", "08:00-12:30", "--days", "mon-thu",
                   "--default"},
                  "secret\n"),
              0);
    EXPECT_EQ(run({"list", "users"}), 0);
    EXPECT_EQ(out, "NAME  ZONE   HOURS        DAYS     DEFAULT\n"
                   "Ann   CET-1  08:00-12:30  mon-thu  yes\n"
                   "Bob   UTC0   09:00-17:00  mon-fri  \n");

    EXPECT_EQ(run({"user", "edit", "ann", "--name", "Anna", "--days", "fri"}), 0);
    EXPECT_EQ(out, "changed user Anna\n");
    EXPECT_EQ(run({"user", "list", "--json"}), 0);
    const auto users = nlohmann::json::parse(out);
    ASSERT_EQ(users.size(), 2u);
    EXPECT_EQ(users[0]["name"], "Anna");
    EXPECT_EQ(users[0]["hours"], "08:00-12:30"); // left as it was
    EXPECT_EQ(users[0]["days"], "fri");
    EXPECT_EQ(users[0]["default"], true);

    EXPECT_EQ(run({"user", "delete", "Anna"}), 0);
    EXPECT_EQ(out, "deleted user Anna\n");
    EXPECT_FALSE(Store(file).findUser("Anna"));
}

TEST_F(RunTesseraTest, ChangesAPasswordOnlyWhenAsked) {
    addUser("Ann");
    EXPECT_EQ(run({"user", "edit", "Ann", "--zone", "UTC0"}, "ignored\n"), 0);
    Store store(file);
    const std::int64_t ann = store.findUser("Ann")->id;
    EXPECT_TRUE(passwordMatches(store.passwordHash(ann), "secret"));
    EXPECT_EQ(run({"user", "edit", "Ann", "--password"}, "changed\n"), 0);
    EXPECT_TRUE(passwordMatches(store.passwordHash(ann), "changed"));
}

TEST_F(RunTesseraTest, ShowsAUser) {
    addUser("Ann");
    EXPECT_EQ(run({"show", "user", "Ann"}), 0);
    EXPECT_THAT(out, HasSubstr("Rule           CET-1CEST,M3.5.0,M10.5.0/3\n"));
    EXPECT_EQ(run({"show", "user", "Ann", "--json"}), 0);
    EXPECT_EQ(nlohmann::json::parse(out)["mailDatabase"].get<std::string>().size(), 16u);
}

TEST_F(RunTesseraTest, RefusesUsersThatAreThereOrNot) {
    addUser("Ann");
    addUser("Bob");
    expectFailure(1, {"user", "add", "ANN", "--password-file", writeFile("password", "x")}, "already");
    expectFailure(1, {"user", "edit", "Ann", "--name", "Bob"}, "already");
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"user", "edit", "Eve"},
          {"user", "delete", "Eve"},
          {"show", "user", "Eve"},
          {"list", "meetings", "--user", "Eve"},
          {"add", "meeting", "--user", "Eve", "--start", "2026-11-23"}}) {
        expectFailure(1, arguments, "there is no user 'Eve'");
    }
}

TEST_F(RunTesseraTest, AddsEditsListsAndDeletesMeetings) {
    addUser("Ann");
    const std::string lunch = addMeeting("Ann", "2026-11-23 12:00", "Lunch");
    const std::string early = addMeeting("Ann", "2026-07-01 08:00", "Early");
    EXPECT_EQ(run({"list", "meetings", "--user", "Ann"}), 0);
    EXPECT_EQ(out, "ID        START             MINUTES  REPEATS  SUBJECT\n"     //
                       + early + "  2026-07-01 08:00  60                Early\n" //
                       + lunch + "  2026-11-23 12:00  60                Lunch\n");

    EXPECT_EQ(run({"edit", "meeting", lunch, "--user", "Ann", "--minutes", "90"}), 0) << err;
    EXPECT_EQ(run({"show", "meeting", lunch, "--user", "Ann", "--json"}), 0);
    const auto meeting = nlohmann::json::parse(out);
    EXPECT_EQ(meeting["sequence"], 2);
    EXPECT_EQ(meeting["subject"], "Lunch");
    EXPECT_EQ(meeting["start"], "2026-11-23 12:00");
    EXPECT_EQ(meeting["minutes"], 90);
    EXPECT_EQ(meeting["allDay"], false);

    EXPECT_EQ(run({"delete", "meeting", lunch, "--user", "Ann"}), 0);
    Store store(file);
    const UserDatabase mail = store.mailDatabase(store.findUser("Ann")->id);
    EXPECT_EQ(store.documents(mail.id, meetingKind).size(), 1u);
    EXPECT_EQ(store.deletedUnids(mail.id).size(), 1u);
}

TEST_F(RunTesseraTest, KeepsMeetingsInUtc) {
    addUser("Ann");
    addMeeting("Ann", "2002-07-15 10:00", "Summer"); // 08:00 UTC
    Store store(file);
    const auto documents = store.documents(store.mailDatabase(store.findUser("Ann")->id).id, meetingKind);
    ASSERT_EQ(documents.size(), 1u);
    EXPECT_EQ(toMeeting(documents[0])->start, 1026691200 + 8 * 3600);
}

TEST_F(RunTesseraTest, TakesMeetingsOfWholeDays) {
    addUser("Ann");
    EXPECT_EQ(
        run({"add", "meeting", "--user", "Ann", "--start", "2026-12-24", "--all-day", "--subject", "Closed"}),
        0);
    EXPECT_EQ(run({"list", "meetings", "--user", "Ann"}), 0);
    EXPECT_THAT(out, HasSubstr("  2026-12-24  1440              Closed\n"));
    const std::string id = out.substr(out.find('\n') + 1, 8);
    EXPECT_EQ(run({"edit", "meeting", id, "--user", "Ann", "--subject", "Holiday"}), 0);
    EXPECT_EQ(run({"show", "meeting", id, "--user", "Ann"}), 0);
    EXPECT_THAT(out, HasSubstr("All day   yes\n")); // nobody said otherwise
    EXPECT_EQ(run({"edit", "meeting", id, "--user", "Ann", "--timed"}), 0);
    EXPECT_EQ(run({"show", "meeting", id, "--user", "Ann"}), 0);
    EXPECT_THAT(out, HasSubstr("All day   no\n"));
}

TEST_F(RunTesseraTest, RefusesMeetings) {
    addUser("Ann");
    addMeeting("Ann", "2026-11-23 12:00", "Lunch");
    expectFailure(2, {"add", "meeting", "--user", "Ann"}, "--start is required");
    expectFailure(2, {"add", "meeting", "--user", "Ann", "--start", "tomorrow"},
                  "'tomorrow' is not a date and time");
    expectFailure(2, {"add", "meeting", "--user", "Ann", "--start", "2026-11-23", "--minutes", "-1"},
                  "--minutes");
    expectFailure(1, {"add", "meeting", "--user", "Ann", "--start", "1992-12-31"}, "between 1993 and 2129");
    expectFailure(1, {"add", "meeting", "--user", "Ann", "--start", "2026-11-23", "--subject", "\xFC"},
                  "UTF-8");
    expectFailure(1, {"show", "meeting", "zzzz", "--user", "Ann"}, "there is no meeting 'zzzz' of Ann");
    expectFailure(1, {"delete", "meeting", "", "--user", "Ann"}, "there is no meeting '' of Ann");
    EXPECT_EQ(run({"list", "meetings", "--user", "Ann", "--json"}), 0);
    EXPECT_EQ(nlohmann::json::parse(out).size(), 1u);
}

class RunTesseraCalendarTest : public RunTesseraTest {
protected:
    // A meeting of two hours at 10:00 from Monday, 2026-11-23, on.
    std::string addRepeating(const std::vector<std::string>& more) {
        std::vector<std::string> arguments{"add",     "meeting",          "--user",    "Ann",
                                           "--start", "2026-11-23 10:00", "--subject", "Team"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        EXPECT_EQ(run(arguments), 0) << err;
        return out.substr(std::string("added meeting ").size(), 8);
    }
    int edit(const std::string& id, const std::vector<std::string>& more) {
        std::vector<std::string> arguments{"edit", "meeting", id, "--user", "Ann"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return run(arguments);
    }
    std::string shownDays(const std::string& from, const std::string& days) {
        EXPECT_EQ(run({"show", "calendar", "--user", "Ann", "--from", from, "--days", days}), 0) << err;
        return out;
    }
    nlohmann::json shown(const std::string& id) {
        EXPECT_EQ(run({"show", "meeting", id, "--user", "Ann", "--json"}), 0) << err;
        return nlohmann::json::parse(out);
    }
};

TEST_F(RunTesseraCalendarTest, AddsMeetingsThatRepeat) {
    addUser("Ann");
    const struct {
        std::vector<std::string> options;
        const char* text;
    } rows[] = {
        {{"--repeat", "daily"}, "daily"},
        {{"--repeat", "weekly"}, "weekly on mon"},
        {{"--repeat", "weekly", "--every", "2", "--on", "mon,wed", "--until", "2027-06-30"},
         "weekly on mon, wed, every 2, until 2027-06-30"},
        {{"--repeat", "monthly-by-date"}, "monthly-by-date on 23"},
        {{"--repeat", "monthly-by-date", "--on", "1,15"}, "monthly-by-date on 1, 15"},
        {{"--repeat", "monthly-by-day"}, "monthly-by-day on 4-mon"},
        {{"--repeat", "monthly-by-day", "--on", "last-fri"}, "monthly-by-day on last-fri"},
    };
    for (const auto& row : rows) {
        const std::string id = addRepeating(row.options);
        EXPECT_EQ(run({"show", "meeting", id, "--user", "Ann"}), 0);
        EXPECT_THAT(out, HasSubstr("Repeats   " + std::string(row.text) + "\n"));
        EXPECT_EQ(run({"list", "meetings", "--user", "Ann"}), 0);
        EXPECT_THAT(out, HasSubstr(std::string("  ") + row.text + "  "));
    }
}

TEST_F(RunTesseraCalendarTest, ShowsWhatElseAMeetingHas) {
    addUser("Ann");
    const std::string id = addRepeating({"--note", "room 5", "--alarm", "15", "--private"});
    EXPECT_EQ(run({"show", "meeting", id, "--user", "Ann"}), 0);
    EXPECT_THAT(out, HasSubstr("Private   yes\nAlarm     15 minutes before\n\nroom 5\n"));
    EXPECT_EQ(edit(id, {"--alarm", "none", "--public"}), 0);
    EXPECT_EQ(shown(id)["private"], false);
    EXPECT_FALSE(shown(id).contains("alarm"));
    EXPECT_EQ(shown(id)["note"], "room 5");
}

TEST_F(RunTesseraCalendarTest, ChangesSingleDays) {
    addUser("Ann");
    const std::string id = addRepeating({"--repeat", "daily"});
    EXPECT_EQ(edit(id, {"--instance", "2026-11-24", "--cancel"}), 0) << err;
    EXPECT_EQ(edit(id, {"--instance", "2026-11-25", "--start", "2026-11-26 14:00", "--minutes", "30",
                        "--subject", "Other"}),
              0)
        << err;
    EXPECT_EQ(shownDays("2026-11-23", "4"), "Mon 2026-11-23\n"
                                            "  10:00-11:00  Team\n"
                                            "Thu 2026-11-26\n"
                                            "  10:00-11:00  Team\n"
                                            "  14:00-14:30  Other\n");
    EXPECT_EQ(run({"show", "meeting", id, "--user", "Ann"}), 0);
    EXPECT_THAT(out, HasSubstr("Not on    2026-11-24\n"
                               "Changed   2026-11-25: 2026-11-26 14:00, 30 minutes, Other\n"));

    EXPECT_EQ(edit(id, {"--instance", "2026-11-24", "--restore"}), 0) << err;
    EXPECT_EQ(edit(id, {"--instance", "2026-11-25", "--restore"}), 0) << err;
    EXPECT_EQ(shownDays("2026-11-24", "2"), "Tue 2026-11-24\n"
                                            "  10:00-11:00  Team\n"
                                            "Wed 2026-11-25\n"
                                            "  10:00-11:00  Team\n");
}

TEST_F(RunTesseraCalendarTest, CancelsAChangedDayWhereverItIsNamed) {
    addUser("Ann");
    for (const char* name : {"2026-11-25", "2026-11-28"}) {
        const std::string id = addRepeating({"--repeat", "weekly", "--on", "mon,wed"});
        EXPECT_EQ(edit(id, {"--instance", "2026-11-25", "--start", "2026-11-28 10:00"}), 0) << err;
        EXPECT_EQ(edit(id, {"--instance", name, "--cancel"}), 0) << err;
        EXPECT_EQ(shown(id)["exceptions"].size(), 0u);
        EXPECT_EQ(shown(id)["deletions"], nlohmann::json::array({"2026-11-25"}));
    }
}

TEST_F(RunTesseraCalendarTest, MovesTheUsualDayOfARuleWithTheStart) {
    addUser("Ann");
    const std::string usual = addRepeating({"--repeat", "weekly"});
    EXPECT_EQ(edit(usual, {"--start", "2026-11-24 11:00"}), 0);
    EXPECT_EQ(shown(usual)["repeats"]["on"], nlohmann::json::array({"tue"}));
    EXPECT_EQ(shownDays("2026-11-30", "2"), "Tue 2026-12-01\n  11:00-12:00  Team\n");
    const std::string named = addRepeating({"--repeat", "weekly", "--on", "mon,fri"});
    EXPECT_EQ(edit(named, {"--start", "2026-11-24 11:00"}), 0);
    EXPECT_EQ(shown(named)["repeats"]["on"], nlohmann::json::array({"mon", "fri"}));
    EXPECT_EQ(edit(named, {"--until", "2026-12-31", "--every", "3"}), 0);
    EXPECT_EQ(shown(named)["repeats"]["every"], 3);
    EXPECT_EQ(edit(named, {"--until", "never"}), 0);
    EXPECT_FALSE(shown(named)["repeats"].contains("until"));
    EXPECT_EQ(edit(named, {"--repeat", "never"}), 0);
    EXPECT_FALSE(shown(named).contains("repeats"));
}

// A flag that isn't there says nothing.
TEST_F(RunTesseraCalendarTest, LeavesWhatIsNotNamed) {
    addUser("Ann");
    const std::string id = addRepeating({"--all-day", "--private"});
    EXPECT_EQ(edit(id, {"--subject", "Other"}), 0);
    EXPECT_EQ(shown(id)["allDay"], true);
    EXPECT_EQ(shown(id)["private"], true);
    EXPECT_EQ(run({"add", "task", "--user", "Ann", "--subject", "Call", "--completed", "--private"}), 0);
    const std::string task = out.substr(std::string("added task ").size(), 8);
    EXPECT_EQ(run({"edit", "task", task, "--user", "Ann", "--subject", "Write"}), 0);
    EXPECT_EQ(run({"show", "task", task, "--user", "Ann", "--json"}), 0);
    EXPECT_EQ(nlohmann::json::parse(out)["completed"], true);
    EXPECT_EQ(nlohmann::json::parse(out)["private"], true);
}

TEST_F(RunTesseraCalendarTest, DrawsAMonth) {
    addUser("Ann");
    addRepeating({"--repeat", "weekly"});
    EXPECT_EQ(run({"show", "calendar", "--user", "Ann", "--month", "2026-11"}), 0) << err;
    EXPECT_THAT(out, HasSubstr("November 2026\nMon "));
    EXPECT_THAT(out, HasSubstr("\n23         24         25         26         27         28         29\n"
                               "10:00 Team\n30\n10:00 Team\n"));
    EXPECT_EQ(run({"show", "calendar", "--user", "Ann", "--month", "2026-11", "--json"}), 0);
    const auto list = nlohmann::json::parse(out);
    ASSERT_EQ(list.size(), 2u);
    EXPECT_EQ(list[1]["start"], "2026-11-30 10:00");
}

TEST_F(RunTesseraCalendarTest, RefusesRulesAndDays) {
    addUser("Ann");
    const std::string once = addRepeating({});
    const std::string daily = addRepeating({"--repeat", "daily", "--every", "2"});
    const struct {
        int status;
        std::string id;
        std::vector<std::string> options;
        const char* message;
    } rows[] = {
        {2, once, {"--repeat", "yearly"}, "'yearly' is no way to repeat"},
        {2, once, {"--every", "2"}, "are for meetings that repeat"},
        {2, once, {"--repeat", "weekly", "--on", "monday"}, "'monday' is not a day"},
        {2, once, {"--repeat", "daily", "--on", "mon"}, "daily has no days"},
        {2, once, {"--repeat", "monthly-by-date", "--on", "32"}, "'32' is not a day"},
        {2, once, {"--repeat", "monthly-by-day", "--on", "5-mon"}, "'5-mon' is not a day"},
        {2, once, {"--repeat", "monthly-by-day", "--on", "2"}, "'2' is not a day"},
        {2, once, {"--repeat", "daily", "--every", "0"}, "--every"},
        {2, once, {"--repeat", "daily", "--until", "soon"}, "'soon' is not a day"},
        {2, once, {"--alarm", "early"}, "'early' is not a number of minutes"},
        {1, once, {"--instance", "2026-11-23", "--cancel"}, "does not repeat"},
        {1, daily, {"--instance", "2026-11-24", "--cancel"}, "does not take place on 2026-11-24"},
        {1, daily, {"--instance", "2026-11-24", "--subject", "x"}, "does not take place on 2026-11-24"},
        {1, daily, {"--instance", "2026-11-25", "--restore"}, "nothing was changed on 2026-11-25"},
        {2, daily, {"--instance", "2026-11-25", "--private"}, "a day of its own"},
        {2, daily, {"--cancel"}, "--instance"},
    };
    for (const auto& row : rows) {
        std::vector<std::string> arguments{"edit", "meeting", row.id, "--user", "Ann"};
        arguments.insert(arguments.end(), row.options.begin(), row.options.end());
        expectFailure(row.status, arguments, row.message);
    }
    expectFailure(2, {"show", "calendar", "--user", "Ann", "--month", "2026-13"}, "'2026-13' is not a month");
}

TEST_F(RunTesseraCalendarTest, TakesMeetingsInAndOutAsICalendar) {
    addUser("Ann");
    const std::string calendar =
        "BEGIN:VCALENDAR\r\nVERSION:2.0\r\n"
        "BEGIN:VEVENT\r\nUID:a\r\nSUMMARY:Team\r\nDTSTART:20261123T090000Z\r\n"
        "DURATION:PT30M\r\nRRULE:FREQ=WEEKLY;COUNT=3\r\n"
        "EXDATE:20261130T090000Z\r\nEND:VEVENT\r\n"
        "BEGIN:VEVENT\r\nUID:b\r\nSUMMARY:Odd\r\nDTSTART:20261123T090000Z\r\n"
        "RRULE:FREQ=HOURLY\r\nEND:VEVENT\r\n"
        "BEGIN:VEVENT\r\nUID:c\r\nSUMMARY:Old\r\nDTSTART:19920101T090000Z\r\nEND:VEVENT\r\n"
        "BEGIN:VTODO\r\nSUMMARY:Call\r\nEND:VTODO\r\nEND:VCALENDAR\r\n";
    EXPECT_EQ(run({"import", "--user", "Ann", writeFile("calendar.ics", calendar)}), 0) << err;
    EXPECT_EQ(err, "tessera: not imported: 'Odd': it repeats by a rule that a handheld can't hold\n"
                   "tessera: not imported: 'Old': a meeting must start between 1993 and 2129\n");
    EXPECT_EQ(shownDays("2026-11-01", "60"), "Mon 2026-11-23\n  10:00-10:30  Team\n"
                                             "Mon 2026-12-07\n  10:00-10:30  Team\n");
    EXPECT_EQ(run({"export", "--user", "Ann", "--format", "icalendar"}), 0) << err;
    EXPECT_THAT(out, HasSubstr("DTSTART:20261123T100000\r\n"));
    EXPECT_THAT(out, HasSubstr("RRULE:FREQ=WEEKLY;UNTIL=20261207T235959;BYDAY=MO;WKST=SU\r\n"));
    EXPECT_THAT(out, HasSubstr("SUMMARY:Call\r\n"));
}

TEST_F(RunTesseraCalendarTest, TakesMeetingsInAndOutAsJson) {
    addUser("Ann");
    const std::string id = addRepeating({"--repeat", "monthly-by-day", "--until", "2027-12-31", "--every",
                                         "2", "--note", "room 5", "--alarm", "15", "--private"});
    EXPECT_EQ(edit(id, {"--instance", "2027-01-25", "--start", "2027-01-26", "--all-day", "--minutes", "1440",
                        "--note", "x"}),
              0)
        << err;
    EXPECT_EQ(edit(id, {"--instance", "2027-03-22", "--cancel"}), 0) << err;
    EXPECT_EQ(run({"add", "mail", "--user", "Ann", "--from", "Bob", "--subject", "Invitation", "--date",
                   "2026-11-24 10:00", "--minutes", "60", "--room", "R1", "--action", "Accept",
                   "--notice-body", "Come"}),
              0);
    EXPECT_EQ(
        run({"add",          "mail", "--user", "Ann",       "--folder",   "drafts", "--to",      "Bob, Eve",
             "--cc",         "C",    "--bcc",  "D",         "--reply-to", "E",      "--subject", "Plan",
             "--importance", "low",  "--date", "2026-11-24"}),
        0);
    const std::string exported = folder + "/office.json";
    EXPECT_EQ(run({"export", "--output", exported}), 0);
    EXPECT_EQ(run({"export"}), 0);
    const std::string text = out;
    std::filesystem::remove(file);
    EXPECT_EQ(run({"import", exported}), 0) << err;
    EXPECT_EQ(run({"export"}), 0);
    EXPECT_EQ(out, text);
    const auto meeting = nlohmann::json::parse(text)["users"][0]["meetings"][0];
    EXPECT_EQ(meeting["start"], "2026-11-23T09:00:00Z");
    EXPECT_EQ(meeting["repeats"],
              nlohmann::json(
                  {{"unit", "monthly-by-day"}, {"every", 2}, {"on", {"4-mon"}}, {"until", "2027-12-31"}}));
    EXPECT_EQ(meeting["deletions"], nlohmann::json::array({"2027-03-22"}));
    EXPECT_EQ(meeting["exceptions"],
              nlohmann::json::parse(R"([{"day": "2027-01-25", "start": "2027-01-26 00:00", "note": "x",
                                         "minutes": 1440, "allDay": true}])"));
}

TEST_F(RunTesseraTest, AddsEditsListsAndDeletesMemos) {
    addUser("Ann");
    const std::string shopping =
        addMemo({"--subject", "Shopping", "--body", "Milk", "--category", "Home", "--category", "Shops"});
    const std::string minutes = addMemo({"--subject", "Minutes", "--file", writeFile("text", "one\ntwo\n")});
    const std::string notes = addMemo({"--subject", "Notes", "--file", "-"}, "typed");
    EXPECT_EQ(run({"list", "memos", "--user", "Ann"}), 0);
    EXPECT_EQ(out, "ID        SUBJECT   CATEGORIES\n"           //
                       + shopping + "  Shopping  Home, Shops\n" //
                       + minutes + "  Minutes   \n"             //
                       + notes + "  Notes     \n");
    EXPECT_EQ(run({"show", "memo", minutes, "--user", "Ann"}), 0);
    EXPECT_THAT(out, HasSubstr("Subject     Minutes\nCategories  \n\none\ntwo\n"));

    EXPECT_EQ(run({"edit", "memo", "--user", "Ann", "--category", "Weekly", notes}), 0) << err;
    EXPECT_EQ(run({"show", "memo", notes, "--user", "Ann", "--json"}), 0);
    auto memo = nlohmann::json::parse(out);
    EXPECT_EQ(memo["sequence"], 2);
    EXPECT_EQ(memo["subject"], "Notes");
    EXPECT_EQ(memo["body"], "typed");
    EXPECT_EQ(memo["categories"], nlohmann::json::array({"Weekly"}));
    EXPECT_EQ(run({"edit", "memo", "--user", "Ann", "--no-category", "--body", "", notes}), 0) << err;
    EXPECT_EQ(run({"list", "memos", "--user", "Ann", "--json"}), 0);
    memo = nlohmann::json::parse(out)[2];
    EXPECT_EQ(memo["sequence"], 3);
    EXPECT_EQ(memo["body"], "");
    EXPECT_EQ(memo["categories"], nlohmann::json::array());

    EXPECT_EQ(run({"delete", "memo", minutes, "--user", "Ann"}), 0);
    EXPECT_EQ(out, "deleted memo " + minutes + "\n");
    Store store(file);
    const UserDatabase journal = store.database(store.findUser("Ann")->id, "journal");
    EXPECT_EQ(store.documents(journal.id, memoKind).size(), 2u);
    EXPECT_EQ(store.deletedUnids(journal.id).size(), 1u);
}

TEST_F(RunTesseraTest, RefusesMemos) {
    addUser("Ann");
    const std::string id = addMemo({"--subject", "Shopping"});
    expectFailure(2, {"add", "memo", "--user", "Ann"}, "--subject is required");
    expectFailure(2, {"add", "memo", "--user", "Ann", "--subject", "a", "--body", "b", "--file", "c"},
                  "excludes");
    expectFailure(2, {"edit", "memo", "--user", "Ann", id, "--category", "a", "--no-category"}, "excludes");
    expectFailure(1, {"add", "memo", "--user", "Ann", "--subject", "a", "--file", folder + "/none"},
                  "cannot read");
    expectFailure(1, {"add", "memo", "--user", "Ann", "--subject", "a\nb"},
                  "the subject of a memo is one line");
    expectFailure(1, {"add", "memo", "--user", "Ann", "--subject", "\xFC"}, "UTF-8");
    expectFailure(1, {"add", "memo", "--user", "Eve", "--subject", "a"}, "there is no user 'Eve'");
    expectFailure(1, {"show", "memo", "zzzz", "--user", "Ann"}, "there is no memo 'zzzz' of Ann");
    expectFailure(1, {"edit", "memo", "", "--user", "Ann"}, "there is no memo '' of Ann");
    EXPECT_EQ(run({"list", "memos", "--user", "Ann", "--json"}), 0);
    EXPECT_EQ(nlohmann::json::parse(out).size(), 1u);
}

TEST_F(RunTesseraTest, AsksForMoreDigitsWhenSeveralMemosBeginWithThem) {
    addUser("Ann");
    // Of seventeen identities two have the same first digit.
    std::string digits;
    std::string twice;
    while (twice.empty()) {
        const char digit = addMemo({"--subject", "a"}).front();
        if (digits.find(digit) != std::string::npos) twice = digit;
        digits += digit;
    }
    expectFailure(1, {"show", "memo", twice, "--user", "Ann"},
                  "several memos begin with '" + twice + "'; give more digits");
}

TEST_F(RunTesseraTest, AddsEditsListsAndDeletesContacts) {
    addUser("Ann");
    EXPECT_EQ(
        run({"add", "contact", "--user", "Ann", "--last-name", "Muster", "--first-name", "Max", "--work", "1",
             "--mobile", "2", "--mobile", "3", "--display", "mobile", "--category", "Business"}),
        0)
        << err;
    const std::string id = out.substr(std::string("added contact ").size(), 8);
    EXPECT_EQ(run({"list", "contacts", "--user", "Ann"}), 0);
    EXPECT_EQ(out, "ID        NAME         COMPANY  PHONE  CATEGORIES\n" + id
                       + "  Muster, Max           2      Business\n");
    EXPECT_EQ(run({"edit", "contact", "--user", "Ann", id, "--work", "", "--note", "old friend"}), 0) << err;
    EXPECT_EQ(run({"show", "contact", "--user", "Ann", id}), 0);
    EXPECT_THAT(out, HasSubstr("Phone, mobile (displayed)  2, 3\n"));
    EXPECT_THAT(out, HasSubstr("\n\nold friend\n"));
    EXPECT_THAT(out, Not(HasSubstr("work")));
    expectFailure(2, {"edit", "contact", "--user", "Ann", id, "--display", "phone"},
                  "'phone' is not a kind of phone");
    EXPECT_EQ(run({"delete", "contact", "--user", "Ann", id}), 0);
    EXPECT_EQ(run({"list", "contacts", "--user", "Ann", "--json"}), 0);
    EXPECT_EQ(out, "[]\n");
}

TEST_F(RunTesseraTest, AddsEditsListsAndDeletesTasks) {
    addUser("Ann");
    EXPECT_EQ(run({"add", "task", "--user", "Ann", "--subject", "Call Kim", "--due", "2026-11-30",
                   "--priority", "high", "--note", "soon"}),
              0)
        << err;
    const std::string id = out.substr(std::string("added task ").size(), 8);
    EXPECT_EQ(run({"list", "tasks", "--user", "Ann"}), 0);
    EXPECT_EQ(out, "ID        DONE  PRIORITY  DUE         SUBJECT   CATEGORIES\n" + id
                       + "        high      2026-11-30  Call Kim  \n");
    EXPECT_EQ(
        run({"edit", "task", "--user", "Ann", id, "--completed", "--due", "", "--repeats", "FREQ=DAILY"}), 0)
        << err;
    EXPECT_EQ(run({"show", "task", "--user", "Ann", id, "--json"}), 0);
    const auto task = nlohmann::json::parse(out);
    EXPECT_EQ(task["subject"], "Call Kim");
    EXPECT_EQ(task["note"], "soon");
    EXPECT_EQ(task["priority"], "high");
    EXPECT_EQ(task["completed"], true);
    EXPECT_EQ(task["private"], false);
    EXPECT_EQ(task["repeats"], "FREQ=DAILY");
    EXPECT_FALSE(task.contains("due"));
    EXPECT_EQ(run({"edit", "task", "--user", "Ann", id, "--private", "--open"}), 0);
    EXPECT_EQ(run({"edit", "task", "--user", "Ann", id, "--priority", "low"}), 0);
    EXPECT_EQ(run({"show", "task", "--user", "Ann", id, "--json"}), 0);
    EXPECT_EQ(nlohmann::json::parse(out)["private"], true); // what isn't named stays
    EXPECT_EQ(nlohmann::json::parse(out)["completed"], false);
    expectFailure(2, {"add", "task", "--user", "Ann", "--subject", "a", "--due", "2026-02-30"},
                  "'2026-02-30' is not a day");
    expectFailure(2, {"add", "task", "--user", "Ann", "--subject", "a", "--priority", "7"},
                  "'7' is not a priority");
    expectFailure(1, {"add", "task", "--user", "Ann", "--subject", "a", "--due", "1992-12-31"},
                  "a task must be due after 1993-01-01");
    expectFailure(2, {"add", "task", "--user", "Ann"}, "--subject is required");
    EXPECT_EQ(run({"delete", "task", "--user", "Ann", id}), 0);
    EXPECT_EQ(out, "deleted task " + id + "\n");
}

TEST_F(RunTesseraTest, TakesAndGivesContactsAndTasksOfOtherPrograms) {
    addUser("Ann");
    const std::string cards = "BEGIN:VCARD\r\nVERSION:3.0\r\nFN:Pat Lee\r\nN:Lee;Pat;;;\r\n"
                              "TEL;TYPE=cell,pref:555\r\nEND:VCARD\r\n";
    EXPECT_EQ(run({"import", "--user", "Ann", writeFile("friends.vcf", cards)}), 0) << err;
    EXPECT_EQ(run({"export", "--user", "Ann", "--format", "vcard3"}), 0);
    EXPECT_EQ(out, cards);
    const std::string tasks = "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nBEGIN:VTODO\r\nSUMMARY:Call Kim\r\n"
                              "DUE;VALUE=DATE:20261130\r\nEND:VTODO\r\nEND:VCALENDAR\r\n";
    EXPECT_EQ(run({"import", "--user", "Ann", writeFile("tasks.ics", tasks)}), 0) << err;
    EXPECT_EQ(run({"export", "--user", "Ann", "--format", "icalendar"}), 0);
    EXPECT_THAT(out, HasSubstr("SUMMARY:Call Kim\r\nDUE;VALUE=DATE:20261130\r\n"));

    expectFailure(2, {"import", folder + "/friends.vcf"}, "--user tells whose these become");
    expectFailure(2, {"export", "--format", "vcard"}, "--user tells whose these are to be");
    expectFailure(1, {"import", "--user", "Bob", folder + "/friends.vcf"}, "there is no user 'Bob'");
    expectFailure(1, {"import", "--user", "Ann", writeFile("bad.vcf", cards + "BEGIN:VCARD\r\n")},
                  "cannot be imported: line 7: the card has no end");
    expectFailure(1, {"import", "--user", "Ann", writeFile("bad.ics", "x")}, "not iCalendar");
    Store store(file);
    EXPECT_EQ(store.documents(store.database(store.findUser("Ann")->id, "contacts").id, "contact").size(),
              1u);
}

TEST_F(RunTesseraTest, ExportsWhatItImports) {
    addUser("Ann");
    addMeeting("Ann", "2026-11-23 12:00", "M\xC3\xBCller");
    addMemo({"--subject", "Shopping", "--body", "Milk\nBread", "--category", "Home"});
    EXPECT_EQ(run({"add", "contact", "--user", "Ann", "--last-name", "Lee", "--note", "a", "--custom2", "b",
                   "--home", "1", "--home", "2", "--display", "home"}),
              0);
    EXPECT_EQ(run({"add", "task", "--user", "Ann", "--subject", "Call", "--due", "2026-11-30", "--private",
                   "--priority", "none", "--repeats", "FREQ=DAILY", "--category", "Home"}),
              0);
    EXPECT_EQ(run({"add", "mail", "--user", "Ann", "--from", "Bob", "--subject", "Invitation", "--date",
                   "2026-11-24 10:00", "--minutes", "60", "--room", "R1", "--action", "Accept",
                   "--notice-body", "Come"}),
              0);
    EXPECT_EQ(
        run({"add",          "mail", "--user", "Ann",       "--folder",   "drafts", "--to",      "Bob, Eve",
             "--cc",         "C",    "--bcc",  "D",         "--reply-to", "E",      "--subject", "Plan",
             "--importance", "low",  "--date", "2026-11-24"}),
        0);
    const std::string exported = folder + "/office.json";
    EXPECT_EQ(run({"export", "--output", exported}), 0);
    EXPECT_EQ(run({"export"}), 0);
    const std::string text = out;
    EXPECT_THAT(text, HasSubstr("\"start\": \"2026-11-23T11:00:00Z\""));
    EXPECT_THAT(text, HasSubstr("\"body\": \"Milk\\nBread\""));
    EXPECT_THAT(text, Not(HasSubstr("argon2"))); // no hash leaves the store

    std::filesystem::remove(file);
    EXPECT_EQ(run({"import", exported}), 0) << err;
    EXPECT_EQ(run({"export"}), 0);
    EXPECT_EQ(out, text);
    Store store(file);
    EXPECT_FALSE(passwordMatches(store.passwordHash(store.findUser("Ann")->id), ""));
}

TEST_F(RunTesseraTest, AddsImportedMeetingsToUsersThatAreThere) {
    addUser("Ann");
    EXPECT_EQ(run({"import", "-"}, R"({"users": [{"name": "Ann", "zone": "UTC0", "meetings": [
                      {"subject": "Lunch", "start": "2026-11-23 12:00", "minutes": 60}]}]})"),
              0)
        << err;
    EXPECT_EQ(run({"list", "meetings", "--user", "Ann"}), 0);
    EXPECT_THAT(out, HasSubstr("2026-11-23 12:00  60                Lunch"));
    EXPECT_EQ(Store(file).findUser("Ann")->zoneName, "CET-1CEST,M3.5.0,M10.5.0/3");
}

TEST_F(RunTesseraTest, ImportsAllOrNothing) {
    addUser("Ann");
    const char* const rows[] = {
        "no JSON",
        "[]",
        R"({"users": [{"name": "Bob"}, {"zone": "UTC0"}]})",
        R"({"users": [{"name": "Bob"}, {"name": 7}]})",
        R"({"users": [{"name": "Bob"}, {"name": ""}]})",
        R"({"users": [{"name": "Bob", "zone": "Nowhere/Land"}]})",
        R"({"users": [{"name": "Bob", "hours": "never"}]})",
        R"({"users": [{"name": "Bob", "meetings": [{"minutes": 60}]}]})",
        R"({"users": [{"name": "Bob", "meetings": [{"start": "2026-11-23", "minutes": -1}]}]})",
        R"({"users": [{"name": "Bob", "meetings": [{"start": "soon", "minutes": 1}]}]})",
        R"({"users": [{"name": "Bob", "meetings": [{"start": "2026-11-23", "minutes": 1, "repeats": {}}]}]})",
        R"({"users": [{"name": "Bob", "meetings": [{"start": "2026-11-23", "minutes": 1, "repeats": {"unit": "daily", "every": 10000}}]}]})",
        R"({"users": [{"name": "Bob", "memos": [{"subject": "a\nb"}]}]})",
        R"({"users": [{"name": "Bob", "mail": [{"subject": "no date"}]}]})",
        R"({"users": [{"name": "Bob", "mail": [{"date": "1992-12-31T00:00:00Z"}]}]})",
        R"({"users": [{"name": "Bob", "mail": [{"date": "2026-11-23T00:00:00Z", "folder": "Spam"}]}]})",
        R"({"users": [{"name": "Bob", "mail": [{"date": "2026-11-23T00:00:00Z", "importance": "1"}]}]})",
        R"({"users": [{"name": "Bob", "mail": [{"date": "2026-11-23T00:00:00Z", "notice": {"minutes": -1}}]}]})",
        R"({"users": [{"name": "Bob", "memos": [{"categories": "Home"}]}]})",
        R"({"users": [{"name": "Bob", "contacts": [{"phones": {"car": ["1"]}}]}]})",
        R"({"users": [{"name": "Bob", "contacts": [{"lastName": 1}]}]})",
        R"({"users": [{"name": "Bob", "tasks": [{"due": "soon"}]}]})",
        R"({"users": [{"name": "Bob", "tasks": [{"priority": 1}]}]})",
        R"({"users": [{"name": "Bob", "meetings": [{"start": "2026-11-23", "minutes": 1, "subject": "a\u0000b"}]}]})",
    };
    for (const char* text : rows) {
        EXPECT_EQ(run({"import", "-"}, text), 1) << text;
        EXPECT_EQ(std::count(err.begin(), err.end(), '\n'), 1) << err;
        EXPECT_EQ(Store(file).users().size(), 1u) << text;
    }
    expectFailure(1, {"import", folder + "/none"}, "cannot read");

    std::filesystem::remove(file);
    EXPECT_EQ(run({"import", "-"}, rows[2]), 1);
    EXPECT_FALSE(std::filesystem::exists(file));
}

// Tells the test when the first line is out.
class WatchedOutput : public std::stringbuf {
public:
    std::string firstLine() {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return !flushed_.empty(); });
        return flushed_;
    }

private:
    int sync() override {
        const std::lock_guard lock(mutex_);
        if (flushed_.empty()) flushed_ = str();
        changed_.notify_all();
        return 0;
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    std::string flushed_;
};

TEST_F(RunTesseraTest, ServesUntilItIsToldToTerminate) {
    addUser("Ann");
    addMeeting("Ann", "2026-11-23 10:00", "Lunch");
    WatchedOutput output;
    int status = -1;
    std::thread server([&] {
        std::istringstream in;
        std::ostream outStream(&output);
        std::ostringstream errStream;
        status = runTessera({file, "serve", "--port", "0", "--port-file", folder + "/port", "--clock",
                             "2026-11-23", "--fail-request", "4,9", "--lose-answer", "5"},
                            in, outStream, errStream);
        EXPECT_EQ(errStream.str(), "");
    });
    const std::string line = output.firstLine();
    std::uint16_t port = 0;
    std::ifstream(folder + "/port") >> port;
    EXPECT_EQ(line, "listening on 127.0.0.1:" + std::to_string(port) + "\n");
    {
        RawClient client(port);
        EXPECT_EQ(bodyOf(client.ask(requestFrame(3, {}))), "P/Tessera/Ann/");
        EXPECT_EQ(resultOf(client.ask(requestFrame(
                      1, {"0", "Ann", "secret", "2.4.2.0", ".", "0", "", "", "Palm", "160x160"}))),
                  "0000");
        // 2026-11-23 is a Monday, 08:00 UTC on it 1069574400 seconds after the start of 1993; in Berlin it is
        // 09:00.
        EXPECT_EQ(bodyOf(client.ask(requestFrame(122, {"1", "Ann"}))), "1069574400/60/1069581600/360/");
        EXPECT_EQ(resultOf(client.ask(requestFrame(7, {}))), "0008");
        EXPECT_EQ(resultOf(client.ask(requestFrame(7, {}))), "closed");
    }
    ::pthread_kill(server.native_handle(), SIGTERM);
    server.join();
    EXPECT_EQ(status, 0);
    EXPECT_EQ(output.str(), line + "stopped\n");
}

TEST_F(RunTesseraTest, CannotServeOnATakenPort) {
    WatchedOutput output;
    std::thread server([&] {
        std::istringstream in;
        std::ostream outStream(&output);
        std::ostringstream errStream;
        runTessera({file, "serve", "--port", "0", "--port-file", folder + "/port"}, in, outStream, errStream);
    });
    output.firstLine();
    std::string port;
    std::ifstream(folder + "/port") >> port;
    expectFailure(1, {"serve", "--port", port}, "cannot listen on 127.0.0.1 port " + port);
    ::pthread_kill(server.native_handle(), SIGINT);
    server.join();
}

} // namespace
} // namespace tsr
