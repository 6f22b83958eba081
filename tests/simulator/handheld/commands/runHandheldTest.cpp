#include "handheld/commands/runHandheld.h"

#include <cstdlib>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <sstream>

#include "handheld/ConfigurationDatabase.h"
#include "handheld/HandheldFolder.h"
#include "handheld/pdbFile.h"
#include "simulator/handheld/commands/RunHandheld.h"

namespace tsr {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using Words = RunHandheld::Words;
using Bytes = std::vector<std::uint8_t>;
TEST_F(RunHandheld, MakesAHandheld) {
    EXPECT_EQ(run({"init", "--os-version", "3.5", "--clock", "2002-02-06T12:34:56", "--user-name", "Pat"}),
              0);
    HandheldFolder opened = HandheldFolder::open(folder());
    EXPECT_EQ(opened.handheld().systemVersion, (VersionNumber{3, 5}));
    EXPECT_EQ(opened.handheld().clock, 1012998896U);
    EXPECT_EQ(opened.handheld().userName, "Pat");
    EXPECT_EQ(opened.handheld().databases.size(), 6U); // five applications and the configuration
    EXPECT_EQ(opened.handheld().find("MemoDB")->appInfo()->size(), 276U);
    EXPECT_EQ(run({"init"}), 1);
    EXPECT_THAT(err_.str(), HasSubstr("holds a handheld already"));
}

TEST_F(RunHandheld, MakesOneOfABackup) {
    Handheld backup;
    backup.create("MemoDB", 1, 2).addRecord({'a', 0});
    std::filesystem::create_directories(folder());
    replaceFile(folder() + "/memos.pdb", toPdb(*backup.find("MemoDB")));
    EXPECT_EQ(run({"init"}), 0);
    EXPECT_EQ(memos().size(), 1U);
}

TEST_F(RunHandheld, AFailedInitLeavesNoHandheld) {
    std::filesystem::create_directories(folder());
    replaceFile(folder() + "/bad.pdb", {1});
    EXPECT_EQ(run({"init"}), 1);
    EXPECT_FALSE(std::filesystem::exists(folder() + "/handheld.json"));
}

TEST_F(RunHandheld, ReadsClocks) {
    const std::pair<const char*, std::uint32_t> rows[] = {{"1012998896", 1012998896},
                                                          {"2002-02-06", 1012953600},
                                                          {"2002-02-06T00:00:01", 1012953601},
                                                          {"0", 0}};
    init();
    for (const auto& [text, seconds] : rows) {
        SCOPED_TRACE(text);
        EXPECT_EQ(run({"configure", "--clock", text}), 0);
        EXPECT_EQ(HandheldFolder::open(folder()).handheld().clock, seconds);
    }
    EXPECT_EQ(run({"configure", "--clock", "host"}), 0);
    EXPECT_FALSE(HandheldFolder::open(folder()).handheld().clock.has_value());
    for (const char* text : {"", "soon", "-1", "4294967296", "2002-02-30", "2002-02-06T24:00:00",
                             "2002-02-06T12:00", "2002-02-06x", "1969-12-31"}) {
        expectRefused({"configure", std::string("--clock=") + text}, 2);
    }
}

TEST_F(RunHandheld, ConfiguresTheConnection) {
    init();
    EXPECT_EQ(run({"configure", "--address", "tessera", "--port", "8000", "--notes-name", "Pat Lee/Acme"}),
              0);
    HandheldFolder opened = HandheldFolder::open(folder());
    const ConnectionChoice connection = ConfigurationDatabase(opened.handheld()).connection();
    EXPECT_EQ(connection.serverAddress, "tessera");
    EXPECT_EQ(connection.serverPort, "8000");
    EXPECT_EQ(connection.userName, "Pat Lee/Acme");
}

TEST_F(RunHandheld, TakesThePasswordFromThreePlacesAndShowsItNowhere) {
    init();
    const std::string line = "hunter2\r\nmore";
    replaceFile(file("secret"), Bytes(line.begin(), line.end()));
    ::setenv("HANDHELD_TEST_PASSWORD", "hunter3", 1);
    const std::pair<Words, std::string> rows[] = {
        {{"configure", "--password-file", file("secret")}, "hunter2"},
        {{"configure", "--password-env", "HANDHELD_TEST_PASSWORD"}, "hunter3"},
        {{"configure", "--ask-password"}, "hunter4"}};
    for (const auto& [words, password] : rows) {
        EXPECT_EQ(run(words, "hunter4\n"), 0);
        HandheldFolder opened = HandheldFolder::open(folder());
        EXPECT_EQ(ConfigurationDatabase(opened.handheld()).connection().password, password);
        for (const Words& show : {Words{"configure"},
                                  {"configure", "--json"},
                                  {"show", "VellumConfig"},
                                  {"show", "VellumConfig", "--json"}}) {
            EXPECT_EQ(run(show), 0);
            EXPECT_THAT(out_.str(), Not(HasSubstr("hunter")));
            EXPECT_THAT(out_.str(), Not(HasSubstr("68756e746572"))); // the same in hexadecimal
            EXPECT_THAT(out_.str(), Not(HasSubstr("68 75 6e 74 65 72")));
        }
    }
    expectRefused({"configure", "--password-file", file("nothing")}, 1);
    expectRefused({"configure", "--password-env", "HANDHELD_TEST_NO_SUCH"}, 1);
    expectRefused({"configure", "--password-env", "X", "--ask-password"}, 2);
}

TEST_F(RunHandheld, ConfiguresApplications) {
    init();
    EXPECT_EQ(run({"configure", "--type", "normal"}), 0);
    EXPECT_EQ(run({"configure", "--app", "memo,todo", "--type", "slow", "--conflict", "S", "--days-before",
                   "1", "--days-after", "65535"}),
              0);
    EXPECT_EQ(run({"configure", "--json"}), 0);
    const auto applications = json()["applications"];
    EXPECT_EQ(applications["mail"]["type"], "normal");
    EXPECT_EQ(applications["mail"]["conflict"], "C");
    EXPECT_EQ(applications["todo"]["type"], "slow");
    EXPECT_EQ(applications["memo"]["conflict"], "S");
    EXPECT_EQ(applications["memo"]["daysBefore"], 1);
    EXPECT_EQ(applications["memo"]["daysAfter"], 65535);
    EXPECT_EQ(run({"configure"}), 0);
    EXPECT_THAT(out_.str(), HasSubstr("memo         slow         S         -1 to +65535 days\n"));
}

TEST_F(RunHandheld, AddsAndShowsRecords) {
    init();
    EXPECT_EQ(run({"add", "memo", "--text", "Milk", "--category", "2"}), 0);
    EXPECT_EQ(out_.str(), "1\n");
    EXPECT_EQ(run({"add", "MemoDB", "--hex", "41 4200", "--secret"}), 0);
    replaceFile(file("content"), {'C'});
    EXPECT_EQ(run({"add", "memo", "--file", file("content")}), 0);
    const std::vector<HandheldRecord> expected = {
        {1, 0x40, 2, {'M', 'i', 'l', 'k', 0}}, {2, 0x50, 0, {'A', 'B', 0}}, {3, 0x40, 0, {'C'}}};
    EXPECT_EQ(memos(), expected);
    EXPECT_EQ(run({"show", "memo", "--hex"}), 0);
    EXPECT_THAT(out_.str(), HasSubstr("id        category  bytes  attributes\n"
                                      "0x000001         2      5  dirty\n"
                                      "    0000  4d 69 6c 6b 00                                   Milk.\n"
                                      "0x000002         0      3  dirty secret\n"));
    EXPECT_EQ(run({"show", "memo", "--json"}), 0);
    EXPECT_EQ(json()["records"][1]["data"], "414200");
    EXPECT_EQ(json()["records"][0]["category"], 2);
}

TEST_F(RunHandheld, SpeaksOfRecordsInFields) {
    init();
    EXPECT_EQ(run({"add", "todo", "description=Call Kim", "due=2002-02-08", "note=a=b\nsecond line"}), 0);
    EXPECT_EQ(run({"edit", "todo", "1", "completed=yes", "due="}), 0); // the rest stays
    EXPECT_EQ(run({"show", "todo"}), 0);
    EXPECT_THAT(out_.str(), HasSubstr("    description   Call Kim\n"
                                      "    priority      1\n"
                                      "    completed     yes\n"
                                      "    note          a=b\n"
                                      "                  second line\n"));
    EXPECT_EQ(run({"show", "todo", "--json"}), 0);
    EXPECT_EQ(json()["records"][0]["fields"]["description"], "Call Kim");
    EXPECT_FALSE(json()["records"][0]["fields"].contains("due"));
    run({"delete", "todo", "1"});
    EXPECT_EQ(run({"show", "todo"}), 0); // no data, so no fields
    EXPECT_THAT(out_.str(), HasSubstr("deleted dirty\n"));
}

// One byte a character on the handheld.
TEST_F(RunHandheld, TurnsTextFromUtf8AndBack) {
    init();
    EXPECT_EQ(run({"add", "memo", "text=Caf\xC3\xA9"}), 0);
    EXPECT_EQ(memos()[0].data, (Bytes{'C', 'a', 'f', 0xE9, 0}));
    EXPECT_EQ(run({"show", "memo"}), 0);
    EXPECT_THAT(out_.str(), HasSubstr("    text          Caf\xC3\xA9\n"));
    EXPECT_EQ(run({"show", "memo", "--json"}), 0);
    EXPECT_EQ(json()["records"][0]["fields"]["text"], "Caf\xC3\xA9");
    for (const char* text :
         {"text=\xE2\x82\xAC", "text=\xC3", "text=\xC3z", "text=\x80", "text=\xF0\x9F\x98\x80"}) {
        expectRefused({"add", "memo", text}, 2);
    }
    EXPECT_EQ(run({"add", "freetime", "Zo\xC3\xAB"}), 0);
    EXPECT_EQ(run({"show", "freetime"}), 0);
    EXPECT_THAT(out_.str(), HasSubstr("Zo\xC3\xAB\n"));
}

TEST_F(RunHandheld, RefusesFieldsThatCannotBe) {
    init();
    run({"add", "VellumConfig", "--hex", "00", "--category", "9"});
    const Words rows[] = {
        {"add", "todo", "descriptoin=x"},
        {"add", "todo", "due=soon"},
        {"add", "todo", "=x"},
        {"add", "todo", "note=x", "--text", "y"},
        {"add", "VellumConfig", "text=x"},
        {"edit", "VellumConfig", "8", "text=x"},
        {"add", "memo", "text=" + std::string(65535, 'a')}, // one too many with its NUL
    };
    for (const Words& words : rows) expectRefused(words, 2);
}

TEST_F(RunHandheld, EditsDeletesAndArchives) {
    init();
    for (const char* text : {"a", "b", "c", "d"}) run({"add", "memo", "--text", text});
    EXPECT_EQ(run({"edit", "memo", "1", "--text", "x", "--category", "15"}), 0);
    EXPECT_EQ(run({"delete", "memo", "0x2"}), 0);
    EXPECT_EQ(run({"archive", "memo", "3", "4"}), 0);
    const std::vector<HandheldRecord> expected = {
        {1, 0x40, 15, {'x', 0}}, {2, 0xC0, 0, {}}, {3, 0x48, 0, {'c', 0}}, {4, 0x48, 0, {'d', 0}}};
    EXPECT_EQ(memos(), expected);
    EXPECT_EQ(run({"show", "memo", "--modified", "--json"}), 0);
    EXPECT_EQ(json()["records"].size(), 4U);
    expectRefused({"edit", "memo", "2", "--text", "x"}, 1);
    expectRefused({"delete", "memo", "1", "2"}, 1); // the first would go, the second is gone: neither goes
}

TEST_F(RunHandheld, MarksARecordAsPrivateAndBack) {
    init();
    run({"add", "memo", "text=a"});
    EXPECT_EQ(run({"edit", "memo", "1", "--secret"}), 0);
    EXPECT_EQ(memos()[0].attributes, HandheldRecord::secret | HandheldRecord::dirty);
    EXPECT_EQ(run({"edit", "memo", "1", "text=b"}), 0); // which says nothing of it
    EXPECT_EQ(memos()[0].attributes, HandheldRecord::secret | HandheldRecord::dirty);
    EXPECT_EQ(run({"edit", "memo", "1", "--no-secret"}), 0);
    EXPECT_EQ(memos()[0].attributes, HandheldRecord::dirty);
}

TEST_F(RunHandheld, ListsAndNamesCategories) {
    init();
    run({"add", "memo", "text=a", "--category", "1"});
    run({"add", "memo", "text=b", "--category", "3"});
    run({"add", "memo", "text=c", "--category", "7"});
    run({"delete", "memo", "1"}); // isn't counted any more
    EXPECT_EQ(run({"category", "memo", "3", "Jard\xC3\xADn"}), 0);
    EXPECT_EQ(run({"category", "memo"}), 0);
    EXPECT_EQ(out_.str(), "category  records  name\n"
                          "       0        0  Unfiled\n"
                          "       1        0  Business\n"
                          "       2        0  Personal\n"
                          "       3        1  Jard\xC3\xADn\n"
                          "       7        1  -\n");
    EXPECT_EQ(run({"category", "memo", "3", "Garden"}), 0); // a new name for the old one
    EXPECT_EQ(run({"category", "memo", "--json"}), 0);
    EXPECT_EQ(json()[3]["category"], 3);
    EXPECT_EQ(json()[3]["name"], "Garden");
    EXPECT_EQ(json()[3]["records"], 1);
    EXPECT_EQ(run({"category", "memo", "3", "--remove"}), 0);
    EXPECT_EQ(memos()[1].category, 0);
    EXPECT_EQ(run({"category", "memo", "--json"}), 0);
    EXPECT_EQ(json().size(), 4U);
    EXPECT_EQ(run({"category", "mail"}), 0);
    EXPECT_THAT(out_.str(), HasSubstr("Outbox"));
}

TEST_F(RunHandheld, NamesACategoryOrNumbersIt) {
    init();
    EXPECT_EQ(run({"add", "memo", "text=a", "--category", "business"}), 0);
    EXPECT_EQ(run({"add", "memo", "text=b", "--category", "Personal"}), 0);
    EXPECT_EQ(run({"edit", "memo", "1", "--category", "UNFILED"}), 0);
    EXPECT_EQ(memos()[0].category, 0);
    EXPECT_EQ(memos()[1].category, 2);
}

TEST_F(RunHandheld, ShowsChosenRecords) {
    init();
    for (const char* text : {"text=a", "text=b", "text=c"}) run({"add", "memo", text});
    EXPECT_EQ(run({"show", "memo", "3", "0x1", "--json"}), 0);
    ASSERT_EQ(json()["records"].size(), 2U);
    EXPECT_EQ(json()["records"][0]["id"], 3);
    EXPECT_EQ(json()["records"][1]["id"], 1);
}

// What others have written may act on a terminal.
TEST_F(RunHandheld, ShowsNoCharacterThatActsOnATerminal) {
    init();
    EXPECT_EQ(run({"add", "memo", "--hex", "1B 5B 32 4A 09 0A 7F 9B 41 00"}), 0);
    EXPECT_EQ(run({"show", "memo"}), 0);
    EXPECT_THAT(out_.str(), HasSubstr("    text          ?[2J\t\n                  ??A\n"));
}

TEST_F(RunHandheld, ListsDatabases) {
    init();
    run({"add", "memo", "--text", "a"});
    EXPECT_EQ(run({"list"}), 0);
    EXPECT_THAT(out_.str(), HasSubstr("MemoDB                           DATA  memo           1         1\n"));
    EXPECT_EQ(run({"list", "--json"}), 0);
    ASSERT_EQ(json().size(), 6U);
    EXPECT_EQ(json()[3]["name"], "MemoDB");
    EXPECT_EQ(json()[3]["records"], 1);
}

TEST_F(RunHandheld, KeepsAListOfColleagues) {
    init();
    EXPECT_EQ(run({"add", "freetime", "Alice Smith", "Bob", "--search-length", "5"}), 0) << err_.str();
    EXPECT_EQ(run({"delete", "freetime", "Bob"}), 0);
    EXPECT_EQ(run({"show", "freetime"}), 0);
    EXPECT_EQ(out_.str(), "Alice Smith\n  no free time known yet\n\n");
    EXPECT_EQ(run({"show", "freetime", "--json"}), 0);
    EXPECT_EQ(json(), nlohmann::json::parse(R"([{"id":2,"name":"Alice Smith","weeks":[]}])"));
    expectRefused({"add", "freetime", "Carol", "Alice Smith"}, 1); // neither is added
    expectRefused({"delete", "freetime", "Bob"}, 1);
    expectRefused({"add", "freetime"}, 2);
    expectRefused({"add", "freetime", "Carol", "--text", "x"}, 2);
}

TEST_F(RunHandheld, ShowsFreeTimeAsSpans) {
    init();
    run({"add", "freetime", "Alice"});
    // Week of 2002-02-04, free on Monday from 08:00 (slot 32, byte 4) for two hours.
    EXPECT_EQ(run({"add", "VellumFreetime", "--category", "4", "--hex",
                   "00000002C44400000000FF" + std::string(79 * 2, '0')}),
              0);
    EXPECT_EQ(run({"show", "freetime", "--json"}), 0);
    EXPECT_EQ(json()[0]["weeks"], nlohmann::json::parse(R"([{"start":"2002-02-04",
        "spans":[{"start":"2002-02-04T08:00","end":"2002-02-04T10:00"}]}])"));
    EXPECT_EQ(run({"show", "freetime", "--ascii"}), 0);
    EXPECT_THAT(out_.str(), HasSubstr("  Mon ................####......"));
}

TEST_F(RunHandheld, SetsAndDeletesPreferences) {
    init();
    EXPECT_EQ(run({"preference", "mail", "3", "--text", "Pat", "--version", "2"}), 0);
    const PreferenceKey key{fourCharacterCode("mail"), 3, true};
    EXPECT_EQ(HandheldFolder::open(folder()).handheld().preferences.at(key),
              (Preference{2, {'P', 'a', 't', 0}}));
    EXPECT_EQ(run({"preference", "mail", "3", "--delete"}), 0);
    EXPECT_THAT(HandheldFolder::open(folder()).handheld().preferences, IsEmpty());
    expectRefused({"preference", "mail", "3", "--delete"}, 1);
    expectRefused({"preference", "mail", "3"}, 2);
    expectRefused({"preference", "mails", "3", "--text", "x"}, 2);
}

TEST_F(RunHandheld, TakesAndGivesFilesOfOtherPrograms) {
    init();
    run({"add", "address", "lastName=Lee", "work=1"});
    run({"add", "todo", "description=Call"});
    for (const auto& [database, name] :
         {std::pair{"address", "a.vcf"}, {"todo", "t.ics"}, {"todo", "t.json"}}) {
        EXPECT_EQ(run({"export", database, file(name)}), 0) << err_.str();
        EXPECT_EQ(run({"import", file(name)}), 0) << err_.str();
    }
    Handheld handheld = HandheldFolder::open(folder()).handheld();
    EXPECT_EQ(handheld.find("AddressDB")->records().all().size(), 2U);
    EXPECT_EQ(handheld.find("ToDoDB")->records().all().size(), 4U);
    EXPECT_EQ(run({"export", "address", file("a.vcf"), "--vcard3"}), 0);
    const auto bytes = readFile(file("a.vcf"));
    EXPECT_THAT(std::string(bytes.begin(), bytes.end()), HasSubstr("VERSION:3.0\r\n"));
    EXPECT_EQ(run({"export", "memo", file("m.vcf")}), 0); // no addresses: a database as it is
    EXPECT_EQ(readFile(file("m.vcf")), readFile(folder() + "/MemoDB.pdb"));
    expectRefused({"import", file("m.vcf")}, 1);
}

TEST_F(RunHandheld, CarriesDatabasesOutAndIn) {
    init();
    run({"add", "memo", "--text", "a"});
    EXPECT_EQ(run({"export", "memo", file("out.pdb")}), 0);
    EXPECT_EQ(readFile(file("out.pdb")), readFile(folder() + "/MemoDB.pdb"));
    run({"add", "memo", "--text", "b"});
    expectRefused({"import", file("out.pdb")}, 1);
    EXPECT_EQ(run({"import", file("out.pdb"), "--replace"}), 0);
    EXPECT_EQ(memos().size(), 1U);
    EXPECT_EQ(readFile(file("out.pdb")), readFile(folder() + "/MemoDB.pdb"));
    replaceFile(file("bad.pdb"), {1});
    expectRefused({"import", file("bad.pdb")}, 1);
    expectRefused({"export", "nothing", file("x.pdb")}, 1);
}

TEST_F(RunHandheld, RefusesWrongArguments) {
    init();
    const Words rows[] = {
        {},
        {"fly"},
        {"list", "--fast"},
        {"configure", "--type", "often"},
        {"configure", "--conflict", "X"},
        {"configure", "--app", "notes"},
        {"configure", "--port", "0"},
        {"configure", "--port", "http"},
        {"configure", "--days-before", "65536"},
        {"configure", "--days-before", "-1"},
        {"configure", "--os-version", "four"},
        {"add", "memo"},
        {"add", "memo", "Alice"},
        {"add", "memo", "--text", "a", "--hex", "00"},
        {"add", "memo", "--hex", "0"},
        {"add", "memo", "--hex", "0g"},
        {"add", "memo", "--text", "a", "--category", "16"},
        {"add", "memo", "--text", "a", "--category", "Garden"},
        {"add", "memo", "--text", "a", "--category", ""},
        {"add", "memo", "--text", "a", "--category", "-1"},
        {"list", "memo"},
        {"show", "memo", "x"},
        {"edit", "memo", "1"},
        {"edit", "memo"},
        {"edit", "memo", "1", "--secret", "--no-secret"},
        {"category"},
        {"category", "memo", "3"},
        {"category", "memo", "16", "Garden"},
        {"category", "memo", "Garden"},
        {"category", "memo", "3", "Garden", "--remove"},
        {"category", "memo", "--remove"},
        {"delete", "memo"},
        {"delete", "memo", "0"},
        {"delete", "memo", "0x1000000"},
        {"delete", "memo", "1x"},
    };
    for (const Words& words : rows) expectRefused(words, 2);
}

TEST_F(RunHandheld, ReportsFailures) {
    init();
    const Words rows[] = {
        {"show", "nothing"},
        {"show", "freetime"}, // nobody was added
        {"show", "memo", "7"},
        {"add", "nothing", "--text", "a"},
        {"add", "memo", "--file", "/nonexistent/file"},
        {"delete", "memo", "7"},
        {"edit", "memo", "7", "--secret"},
        {"category", "nothing"},
        {"category", "VellumConfig"},
        {"category", "memo", "0", "Mine"},
        {"category", "memo", "0", "--remove"},
        {"category", "memo", "3", "Business"},
        {"category", "memo", "3", "Sixteen letters!"},
        {"category", "memo", "3", ""},
        {"delete", "freetime", "Bob"},
    };
    for (const Words& words : rows) expectRefused(words, 1);
}

TEST_F(RunHandheld, RefusesAFolderThatIsNoHandheld) {
    EXPECT_EQ(run({"list"}), 1);
    EXPECT_THAT(err_.str(), HasSubstr("is no handheld"));
    EXPECT_FALSE(std::filesystem::exists(folder()));
}

TEST_F(RunHandheld, ShowsACalendar) {
    init(); // on 2002-02-06, a Wednesday
    EXPECT_EQ(run({"add", "datebook", "description=Team", "date=2002-02-04", "start=10:00", "end=11:00",
                   "repeat=weekly", "on=2", "except=2002-02-11"}),
              0)
        << err_.str();
    EXPECT_EQ(run({"add", "datebook", "description=Trip", "date=2002-02-18"}), 0) << err_.str();
    EXPECT_EQ(run({"calendar", "--from", "2002-02-04", "--days", "15"}), 0) << err_.str();
    EXPECT_EQ(out_.str(), "Mon 2002-02-04\n  10:00-11:00  Team\n"
                          "Mon 2002-02-18\n  all day      Trip\n  10:00-11:00  Team\n");
    EXPECT_EQ(run({"calendar"}), 0) << err_.str();
    EXPECT_THAT(out_.str(), HasSubstr("February 2002\n"));
    EXPECT_THAT(out_.str(),
                HasSubstr("\n18         19         20         21         22         23         24\n"
                          "Trip\n10:00 Team\n25"));
    EXPECT_EQ(run({"calendar", "--month", "2002-03", "--json"}), 0) << err_.str();
    EXPECT_EQ(json().size(), 4U); // 4, 11, 18 and 25 March
    EXPECT_EQ(json()[0]["subject"], "Team");
    EXPECT_EQ(json()[0]["start"], "2002-03-04 10:00");
    expectRefused({"calendar", "--month", "2002-13"}, 2);
    expectRefused({"calendar", "--from", "soon"}, 2);
    expectRefused({"calendar", "--days", "3"}, 2);
}

TEST_F(RunHandheld, NamesTheEventsThatItCannotHold) {
    init();
    const std::string calendar = "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nBEGIN:VEVENT\r\nSUMMARY:Odd\r\n"
                                 "DTSTART:20020206T100000\r\nRRULE:FREQ=HOURLY\r\nEND:VEVENT\r\n"
                                 "BEGIN:VTODO\r\nSUMMARY:Call\r\nEND:VTODO\r\nEND:VCALENDAR\r\n";
    replaceFile(file("c.ics"), {calendar.begin(), calendar.end()});
    EXPECT_EQ(run({"import", file("c.ics")}), 0);
    EXPECT_EQ(err_.str(), "handheld: not imported: 'Odd': it repeats by a rule that a handheld can't hold\n");
    Handheld handheld = HandheldFolder::open(folder()).handheld();
    EXPECT_EQ(handheld.find("ToDoDB")->records().all().size(), 1U);
    run({"add", "datebook", "description=Trip", "date=2002-02-18"});
    EXPECT_EQ(run({"export", "datebook", file("d.ics")}), 0) << err_.str();
    const auto bytes = readFile(file("d.ics"));
    EXPECT_THAT(std::string(bytes.begin(), bytes.end()), HasSubstr("DTSTART;VALUE=DATE:20020218\r\n"));
}

TEST_F(RunHandheld, Helps) {
    std::istringstream in;
    EXPECT_EQ(runHandheld({"--help"}, in, out_, err_), 0);
    EXPECT_THAT(out_.str(), HasSubstr("handheld palm init"));
    const std::string overview = out_.str();
    for (const char* command : {"init", "configure", "list", "show", "add", "edit", "delete", "archive",
                                "category", "calendar", "preference", "import", "export", "reply"}) {
        SCOPED_TRACE(command);
        EXPECT_THAT(overview, HasSubstr(command));
        EXPECT_EQ(run({command, "--help"}), 0);
        EXPECT_THAT(out_.str(), HasSubstr(std::string("Usage: handheld FOLDER ") + command));
        EXPECT_THAT(out_.str(), HasSubstr(std::string("Example: handheld palm ") + command));
        EXPECT_THAT(err_.str(), IsEmpty());
    }
}

} // namespace
} // namespace tsr
