#include "tessera/TesseraSession.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "foundation/GeneralError.h"
#include "support/bytes.h"
#include "tessera/Meeting.h"
#include "tessera/TesseraError.h"
#include "tessera/passwords.h"

namespace tsr {
namespace {

using test::bytes;
using test::hexText;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::int64_t monday = 1012780800; // 2002-02-04 00:00 UTC, 286934400 seconds after the start of 1993
constexpr std::int64_t hour = 3600;

class TesseraSessionTest : public ::testing::Test {
protected:
    TesseraSessionTest() : service(store, [this] { return now; }), session(service) {
        addUser("Ann", "secret", "UTC0");
    }

    void addUser(const std::string& name, const std::string& password, const std::string& zone) {
        User user;
        user.name = name;
        user.zoneName = zone;
        user.zone = ZoneRule(zone);
        store.addUser(user, hashPassword(password, PasswordCost::Minimal));
    }

    void addMeeting(const std::string& user, std::int64_t start, std::uint32_t minutes) {
        store.addDocument(store.mailDatabase(store.findUser(user)->id).id, meetingKind,
                          toProperties({"Busy", start, minutes, false}));
    }

    static std::vector<std::string> credentials(const std::string& name, const std::string& password) {
        return {"286934400", name, password, "2.4.2.0", ".", "0", "", "", "Palm", "160x160"};
    }

    Response ask(std::uint32_t code, const std::vector<std::string>& strings = {}) {
        return session.handle({code, strings});
    }

    void authenticate() { ASSERT_EQ(ask(1, credentials("Ann", "secret")).result, ResultCode::Success); }

    void expectRefused(const Response& response, ResultCode result, const std::string& message) {
        EXPECT_EQ(response.result, result);
        EXPECT_EQ(response.message, message);
        EXPECT_THAT(response.strings, IsEmpty());
    }

    std::int64_t now = monday + 12 * hour;
    Store store = Store::inMemory();
    TesseraService service;
    TesseraSession session;
};

TEST_F(TesseraSessionTest, FindsTheNameOfTheOnlyUser) {
    const Response response = ask(3);
    EXPECT_EQ(response.code, 3u);
    EXPECT_EQ(response.result, ResultCode::Success);
    EXPECT_THAT(response.strings, ElementsAre("P", "Tessera", "Ann"));
}

TEST_F(TesseraSessionTest, FindsNoNameAmongSeveralUsersUntilOneIsTheDefault) {
    addUser("Bob", "word", "UTC0");
    EXPECT_THAT(ask(3).strings, ElementsAre("P", "Tessera"));
    store.setDefaultUser(store.findUser("Bob")->id);
    EXPECT_THAT(ask(3).strings, ElementsAre("P", "Tessera", "Bob"));
}

TEST_F(TesseraSessionTest, Authenticates) {
    const Response response = ask(1, credentials("Ann", "secret"));
    EXPECT_EQ(response.result, ResultCode::Success);
    EXPECT_THAT(response.strings, IsEmpty());
    EXPECT_EQ(ask(1, credentials("ann", "secret")).result, ResultCode::Success); // as the store takes names
}

TEST_F(TesseraSessionTest, DoesNotTellAnUnknownUserFromAWrongPassword) {
    const std::string message = "The user name or the password is wrong.";
    expectRefused(ask(1, credentials("Ann", "Secret")), ResultCode::AuthenticationFailed, message);
    expectRefused(ask(1, credentials("Ann", "")), ResultCode::AuthenticationFailed, message);
    expectRefused(ask(1, credentials("Eve", "secret")), ResultCode::AuthenticationFailed, message);
    expectRefused(ask(1, credentials("", "")), ResultCode::AuthenticationFailed, message);
}

TEST_F(TesseraSessionTest, NeedsTenStringsAndATimeToAuthenticate) {
    auto strings = credentials("Ann", "secret");
    strings.pop_back();
    expectRefused(ask(1, strings), ResultCode::BadRequest, "The request has 9 strings in the place of 10.");
    strings = credentials("Ann", "secret");
    strings[0] = "noon";
    expectRefused(ask(1, strings), ResultCode::BadRequest, "'noon' is not a number.");
}

TEST_F(TesseraSessionTest, ForgetsTheUserWhenAuthenticatingAnewFails) {
    authenticate();
    ask(1, credentials("Ann", "wrong"));
    EXPECT_EQ(ask(7).result, ResultCode::NotAuthenticated);
}

TEST_F(TesseraSessionTest, ServesStrangersOnlyWhatTheyNeedToComeIn) {
    for (const std::uint32_t code : {7u, 122u, 200u, 324u}) {
        expectRefused(ask(code), ResultCode::NotAuthenticated, "Authenticate before making this request.");
    }
    EXPECT_EQ(ask(3).result, ResultCode::Success);
    EXPECT_EQ(ask(19).result, ResultCode::Success);
}

TEST_F(TesseraSessionTest, ShutsOutAUserWhoIsDeletedMeanwhile) {
    authenticate();
    store.deleteUser(store.findUser("Ann")->id);
    EXPECT_EQ(ask(7).result, ResultCode::NotAuthenticated);
}

TEST_F(TesseraSessionTest, TellsTheTimeZone) {
    addUser("Bob", "word", "CET-1CEST,M3.5.0,M10.5.0/3");
    ask(1, credentials("Bob", "word"));
    EXPECT_THAT(ask(7).strings, ElementsAre("c4ffffff00000000c4ffffff"
                                            "00000a00000005000300000000000000"
                                            "00000300000005000200000000000000"));
}

TEST_F(TesseraSessionTest, FindsTheMailDatabase) {
    authenticate();
    EXPECT_THAT(ask(324).strings,
                ElementsAre("Mail of Ann", store.mailDatabase(store.findUser("Ann")->id).dbid));
}

TEST_F(TesseraSessionTest, ListsItsRefusals) {
    authenticate();
    EXPECT_THAT(ask(200).strings, ElementsAre("0"));
    ask(9999);
    ask(122, {"3", "Eve"});
    EXPECT_THAT(ask(200).strings,
                ElementsAre("2", "This server does not know request 9999.", "There is no user 'Eve'."));
    TesseraSession other(service);
    other.handle({1, credentials("Ann", "secret")});
    EXPECT_THAT(other.handle({200, {}}).strings, ElementsAre("0")); // the refusals of others are not its own
}

TEST_F(TesseraSessionTest, KeepsAHundredRefusalsAndCountsTheRest) {
    authenticate();
    for (int i = 0; i < 101; ++i) ask(9999);
    const auto strings = ask(200).strings;
    EXPECT_EQ(strings.size(), 101u);
    EXPECT_EQ(strings[0], "101");
}

TEST_F(TesseraSessionTest, StartsAnewAfterTheClose) {
    authenticate();
    ask(9999);
    EXPECT_THAT(ask(19).strings, IsEmpty());
    EXPECT_EQ(ask(7).result, ResultCode::NotAuthenticated);
    authenticate();
    EXPECT_THAT(ask(200).strings, ElementsAre("1", "Authenticate before making this request."));
}

TEST_F(TesseraSessionTest, RefusesStringsThatARequestDoesNotHave) {
    authenticate();
    for (const std::uint32_t code : {3u, 7u, 200u, 324u, 19u}) {
        EXPECT_EQ(ask(code, {""}).result, ResultCode::BadRequest) << code;
    }
    EXPECT_EQ(ask(122, {"1"}).result, ResultCode::BadRequest);
    EXPECT_EQ(ask(122, {"1", "Ann", ""}).result, ResultCode::BadRequest);
}

TEST_F(TesseraSessionTest, SearchesFreeTime) {
    authenticate();
    addUser("Bob", "word", "UTC0");
    addMeeting("Bob", monday + 10 * hour, 90);
    addMeeting("Ann", monday + 9 * hour, 480);
    // Monday 09:00 to 10:00 and 11:30 to 17:00, Tuesday 09:00 to 17:00
    EXPECT_THAT(ask(122, {"2", "bob"}).strings,
                ElementsAre("286966800", "60", "286975800", "330", "287053200", "480"));
}

TEST_F(TesseraSessionTest, SearchesFreeTimeAroundMeetingsThatRepeat) {
    authenticate();
    // Daily from 09:00 for 8 hours since long ago, without Tuesday, and on Wednesday until noon alone.
    Meeting meeting{"Busy", monday - 700 * 24 * hour + 9 * hour, 480, false};
    const auto today = dayOf(monday);
    meeting.pattern.emplace().start = meeting.start;
    meeting.pattern->deletions = {today + std::chrono::days(1)};
    EventException half;
    half.patternDate = today + std::chrono::days(2);
    half.start = monday + 57 * hour;
    half.minutes = 180;
    meeting.pattern->exceptions = {half};
    store.addDocument(store.mailDatabase(store.findUser("Ann")->id).id, meetingKind, toProperties(meeting));
    // Tuesday 09:00 to 17:00, 33 hours on, and Wednesday 12:00 to 17:00, 60 hours on
    EXPECT_THAT(ask(122, {"3", "Ann"}).strings, ElementsAre("287053200", "480", "287150400", "300"));
}

TEST_F(TesseraSessionTest, FindsNoFreeTimeInAFullCalendar) {
    authenticate();
    addMeeting("Ann", monday, 24 * 60);
    const Response response = ask(122, {"1", "Ann"});
    EXPECT_EQ(response.result, ResultCode::Success);
    EXPECT_THAT(response.strings, IsEmpty());
}

TEST_F(TesseraSessionTest, SearchesOneYearAtMost) {
    authenticate();
    // 366 days from a Monday: 52 weeks of five working days, then a Monday and a Tuesday.
    EXPECT_EQ(ask(122, {"65535", "Ann"}).strings.size(), 2u * 262);
}

TEST_F(TesseraSessionTest, RefusesASearchThatItDoesNotUnderstand) {
    authenticate();
    expectRefused(ask(122, {"1", "Eve"}), ResultCode::NotFound, "There is no user 'Eve'.");
    expectRefused(ask(122, {"", "Ann"}), ResultCode::BadRequest, "'' is not a number.");
    expectRefused(ask(122, {"4294967296", "Ann"}), ResultCode::BadRequest, "'4294967296' is not a number.");
    // A name that fills the message is cut, but not within a character: 49 of two bytes and one letter before
    // them.
    std::string name = "x";
    std::string cut = "x";
    for (int i = 0; i < 100; ++i) name += "\xC3\xBC";
    for (int i = 0; i < 49; ++i) cut += "\xC3\xBC";
    expectRefused(ask(122, {"1", name}), ResultCode::NotFound, "There is no user '" + cut + "...'.");
}

TEST_F(TesseraSessionTest, AnswersFailuresOfItsOwn) {
    TesseraService broken(store, []() -> std::int64_t { throw TesseraError("the clock has stopped"); });
    expectRefused(TesseraSession(broken).handle({3, {}}), ResultCode::ServerFailed, "the clock has stopped");
    TesseraService alsoBroken(store, []() -> std::int64_t { throw GeneralError(Message::NotImplemented); });
    expectRefused(TesseraSession(alsoBroken).handle({3, {}}), ResultCode::ServerFailed,
                  "Not implemented yet.");
}

TEST_F(TesseraSessionTest, AnswersTimesBefore1993WithNothing) {
    authenticate();
    now = 0;
    EXPECT_THAT(ask(122, {"1", "Ann"}).strings, IsEmpty());
}

TEST_F(TesseraSessionTest, TakesLongFramesFromItsUserAlone) {
    EXPECT_EQ(session.maxRequestBytes(), 65536u);
    authenticate();
    EXPECT_EQ(session.maxRequestBytes(), 99999999u);
    ask(19);
    EXPECT_EQ(session.maxRequestBytes(), 65536u);
}

TEST_F(TesseraSessionTest, AnswersAFrame) {
    EXPECT_EQ(hexText(session.handleFrame({3, 0}, {})),
              "30 00 30 00 30 00 30 00 30 00 30 00 36 00 38 00 " // 00000068: 40 + 4 + 16 + 8
              "30 00 30 00 30 00 33 00 "
              "30 00 30 00 30 00 30 00 "
              "30 00 30 00 30 00 30 00 "
              "50 00 00 00 "                                     // P
              "54 00 65 00 73 00 73 00 65 00 72 00 61 00 00 00 " // Tessera
              "41 00 6E 00 6E 00 00 00");                        // Ann
}

TEST_F(TesseraSessionTest, AnswersAFrameWithABadBodyAndRemembersIt) {
    const auto frame = session.handleFrame({3, 1}, bytes("61"));
    EXPECT_EQ(hexText({frame.begin() + 24, frame.begin() + 32}), "30 00 30 00 30 00 33 00"); // 0003
    authenticate();
    EXPECT_THAT(ask(200).strings, ElementsAre("1", "The body of the request ends within a character."));
}

} // namespace
} // namespace tsr
