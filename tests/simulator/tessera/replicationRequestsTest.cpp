#include "tessera/replicationRequests.h"

#include <algorithm>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "MemoClient.h"
#include "RawClient.h"
#include "tessera/ConnectionLost.h"
#include "tessera/TesseraSession.h"
#include "tessera/passwords.h"

namespace tsr {
namespace {

using test::bodyOf;
using test::MemoClient;
using test::requestFrame;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using ::testing::UnorderedElementsAre;

const std::string noDbid(16, '0');
const std::string noUnid(32, '0');

class ReplicationTest : public ::testing::Test {
protected:
    ReplicationTest() : service(store, [] { return std::int64_t{1012780800}; }), session(service) {
        addUser("Ann");
        authenticate(session, "Ann");
        journal = store.database(store.findUser("Ann")->id, "journal");
    }

    void addUser(const std::string& name) {
        User user;
        user.name = name;
        store.addUser(user, hashPassword("secret", PasswordCost::Minimal));
    }

    static void authenticate(TesseraSession& session, const std::string& name) {
        ASSERT_EQ(
            session.handle({1, {"286934400", name, "secret", "2.4.2.0", ".", "0", "", "", "Palm", "160x160"}})
                .result,
            ResultCode::Success);
    }

    Response ask(std::uint32_t code, const std::vector<std::string>& strings) {
        return session.handle({code, strings});
    }

    // A document's text is its subject.
    Document add(const std::string& subject) {
        return store.addDocument(journal.id, "memo",
                                 {{"Body", {""}}, {"Category", {""}}, {"Subject", {subject}}});
    }

    void change(const std::string& subject, const std::string& newSubject) {
        store.changeDocument(journal.id, find(subject).unid,
                             {{"Body", {""}}, {"Category", {""}}, {"Subject", {newSubject}}});
    }

    void remove(const std::string& subject) { store.deleteDocument(journal.id, find(subject).unid); }

    Document find(const std::string& subject) {
        for (const Document& document : store.documents(journal.id, "memo")) {
            if (document.properties.at("Subject").front() == subject) return document;
        }
        throw std::runtime_error("no document " + subject);
    }

    std::vector<std::string> subjects() {
        std::vector<std::string> subjects;
        for (const Document& document : store.documents(journal.id, "memo")) {
            subjects.push_back(document.properties.at("Subject").front());
        }
        std::sort(subjects.begin(), subjects.end());
        return subjects;
    }

    // Sends the replication information; gives the token.
    std::string inform(const std::string& rule, const std::vector<std::string>& entries) {
        std::vector<std::string> strings{"286934400", rule};
        strings.insert(strings.end(), entries.begin(), entries.end());
        const Response response = ask(350, strings);
        EXPECT_THAT(response.strings, SizeIs(1)) << response.message;
        return response.strings.at(0);
    }

    void expectRefused(const Response& response, ResultCode result, const std::string& message) {
        EXPECT_EQ(response.result, result);
        EXPECT_EQ(response.message, message);
        EXPECT_THAT(response.strings, IsEmpty());
    }

    // Nothing is left to do, and both sides have the same.
    void expectAtRest(MemoClient& client, const std::string& rule = "C") {
        EXPECT_TRUE(client.synchronize(rule).none());
        EXPECT_EQ(client.subjects(), subjects());
    }

    void prepareChanges(MemoClient& client);

    void startAnew() {
        service.orderFaults({});
        for (const std::string& subject : subjects()) remove(subject);
    }

    Store store = Store::inMemory();
    TesseraService service;
    TesseraSession session;
    UserDatabase journal;
};

TEST_F(ReplicationTest, TakesANewItem) {
    const Response response = ask(355, {"", noDbid, noUnid, "#Differences=0", "Body=a=b\nc", "Category=x",
                                        "Category=", "Subject=Milk"});
    ASSERT_EQ(response.result, ResultCode::Success) << response.message;
    const Document document = find("Milk");
    EXPECT_THAT(response.strings, ElementsAre(journal.dbid, document.unid, "1"));
    EXPECT_EQ(document.properties,
              (Properties{{"Body", {"a=b\nc"}}, {"Category", {"x", ""}}, {"Subject", {"Milk"}}}));
}

TEST_F(ReplicationTest, TakesAChangedItem) {
    const Document document = add("Milk");
    const std::string token = inform("C", {journal.dbid, document.unid, "1", "2"});
    EXPECT_THAT(ask(355, {token, journal.dbid, document.unid, "Subject=Bread"}).strings,
                ElementsAre(journal.dbid, document.unid, "2"));
    EXPECT_EQ(find("Bread").properties, (Properties{{"Subject", {"Bread"}}}));
}

TEST_F(ReplicationTest, ReplacesNoChangeThatNotesHasMadeMeanwhile) {
    const Document document = add("Milk");
    const std::vector<std::string> known{journal.dbid, document.unid, "1", "2"};
    const std::string token = inform("S", known);
    change("Milk", "Bread");
    expectRefused(ask(355, {token, journal.dbid, document.unid, "Subject=Eggs"}), ResultCode::ItemRefused,
                  "The document was changed in Notes meanwhile.");
    EXPECT_THAT(subjects(), ElementsAre("Bread"));
    EXPECT_THAT(ask(359, {inform("S", known)}).strings, ElementsAre("1")); // a conflict for the next session

    const std::string again = inform("S", {journal.dbid, document.unid, "2", "3"});
    for (const char* sequence : {"3", "4"}) { // its own changes are none of Notes
        EXPECT_THAT(ask(355, {again, journal.dbid, document.unid, "Subject=Eggs"}).strings,
                    ElementsAre(journal.dbid, document.unid, sequence));
    }
}

TEST_F(ReplicationTest, ReplacesAnyChangeWhereTheHandheldWins) {
    const Document document = add("Milk");
    const std::string token = inform("C", {journal.dbid, document.unid, "1", "2"});
    change("Milk", "Bread");
    EXPECT_THAT(ask(355, {token, journal.dbid, document.unid, "Subject=Eggs"}).strings,
                ElementsAre(journal.dbid, document.unid, "3"));
    EXPECT_THAT(subjects(), ElementsAre("Eggs"));
}

TEST_F(ReplicationTest, GivesAnItem) {
    const Document document = store.addDocument(
        journal.id, "memo",
        {{"Subject", {"Milk"}}, {"Body", {"a=b\nc"}}, {"Category", {"x", ""}}, {"UNID", {"y"}}});
    const std::string token = inform("C", {});
    EXPECT_THAT(ask(356, {token}).strings, ElementsAre("1"));
    EXPECT_THAT(ask(357, {token, "0", "1"}).strings,
                ElementsAre("Body=a=b\nc", "Category=x", "Category=", "Subject=Milk", "UNID=y",
                            "DBID=" + journal.dbid, "UNID=" + document.unid, "SeqNum=1"));
}

TEST_F(ReplicationTest, ListsWhatIsToMove) {
    const Document wanted = add("wanted");
    const Document conflict = add("conflict");
    const Document unknown = add("unknown");
    change("conflict", "changed");
    const std::string gone(32, 'f');
    const std::string token = inform("S", {journal.dbid, wanted.unid, "1", "2", journal.dbid, conflict.unid,
                                           "1", "2", journal.dbid, gone, "4", "4"});
    EXPECT_THAT(ask(353, {token}).strings, ElementsAre("1"));
    EXPECT_THAT(ask(354, {token, "0", "1"}).strings, ElementsAre("1", journal.dbid, wanted.unid));
    EXPECT_THAT(ask(359, {token}).strings, ElementsAre("1"));
    EXPECT_THAT(ask(360, {token, "0", "1"}).strings, ElementsAre("1", journal.dbid, conflict.unid));
    EXPECT_THAT(ask(351, {token}).strings, ElementsAre("1"));
    EXPECT_THAT(ask(352, {token, "0", "1"}).strings, ElementsAre("1", journal.dbid, gone));
    EXPECT_THAT(ask(356, {token}).strings, ElementsAre("1"));
    EXPECT_EQ(ask(357, {token, "0", "1"}).strings.at(2), "Subject=unknown");
}

TEST_F(ReplicationTest, FetchesListsInPieces) {
    const std::string token = inform("C", {"x", "a", "1", "1", "x", "b", "1", "1", "x", "c", "1", "1"});
    EXPECT_THAT(ask(352, {token, "0", "2"}).strings, ElementsAre("2", "x", "a", "x", "b"));
    EXPECT_THAT(ask(352, {token, "2", "2"}).strings, ElementsAre("1", "x", "c"));
    EXPECT_THAT(ask(352, {token, "3", "1"}).strings, ElementsAre("0"));
    EXPECT_THAT(ask(352, {token, "4294967295", "4294967295"}).strings, ElementsAre("0"));
    EXPECT_THAT(ask(352, {token, "0", "0"}).strings, ElementsAre("0"));
}

TEST_F(ReplicationTest, TakesAnAnomaly) {
    const Document document = add("one");
    change("one", "two");
    const std::string token = inform("S", {journal.dbid, document.unid, "1", "2"});
    EXPECT_THAT(ask(356, {token}).strings, ElementsAre("0")); // not before the handheld's version is safe
    const auto strings =
        ask(361, {token, journal.dbid, document.unid, "0", "#Differences=0", "Subject=three"}).strings;
    EXPECT_THAT(strings, ElementsAre(journal.dbid, find("three").unid, "1"));
    EXPECT_NE(find("three").unid, document.unid);
    EXPECT_EQ(find("two").sequence, 2u);
    EXPECT_THAT(ask(356, {token}).strings, ElementsAre("1"));
    EXPECT_EQ(ask(357, {token, "0", "1"}).strings.at(2), "Subject=two");
    // It was asked for once.
    expectRefused(ask(361, {token, journal.dbid, document.unid, "0", "Subject=four"}), ResultCode::NotFound,
                  "No anomaly of the document '" + document.unid + "' was asked for.");
}

TEST_F(ReplicationTest, DeletesDocuments) {
    const Document document = add("Milk");
    const std::string gone(32, 'f');
    const std::vector<std::string> pairs{journal.dbid, document.unid, journal.dbid, gone};
    EXPECT_EQ(ask(358, pairs).strings, pairs); // of the second nothing is left to delete
    EXPECT_THAT(subjects(), IsEmpty());
    EXPECT_THAT(store.deletedUnids(journal.id), ElementsAre(document.unid));
    EXPECT_EQ(ask(358, pairs).strings, pairs);
    EXPECT_THAT(store.deletedUnids(journal.id), SizeIs(1));
    EXPECT_THAT(ask(358, {}).strings, IsEmpty());
}

TEST_F(ReplicationTest, TouchesNothingOfOtherUsersAndApplications) {
    addUser("Bob");
    const UserDatabase other = store.database(store.findUser("Bob")->id, "journal");
    const Document his = store.addDocument(other.id, "memo", {});
    const Document another = store.addDocument(journal.id, "diary", {});
    for (const ItemName& name :
         {ItemName{other.dbid, his.unid}, {journal.dbid, his.unid}, {journal.dbid, another.unid}}) {
        const std::string token = inform("C", {name.dbid, name.unid, "1", "2"});
        EXPECT_THAT(ask(352, {token, "0", "9"}).strings, ElementsAre("1", name.dbid, name.unid));
        EXPECT_THAT(ask(356, {token}).strings, ElementsAre("0"));
        expectRefused(ask(355, {token, name.dbid, name.unid}), ResultCode::NotFound,
                      "There is no document '" + name.unid + "'.");
        ask(358, {name.dbid, name.unid});
    }
    EXPECT_TRUE(store.findDocument(other.id, his.unid));
    EXPECT_TRUE(store.findDocument(journal.id, another.unid));
}

TEST_F(ReplicationTest, ServesNoStrangers) {
    TesseraSession stranger(service);
    for (const std::uint32_t code : {350, 351, 352, 353, 354, 355, 356, 357, 358, 359, 360, 361}) {
        EXPECT_EQ(stranger.handle({code, {}}).result, ResultCode::NotAuthenticated) << code;
    }
}

TEST_F(ReplicationTest, RefusesWhatItDoesNotUnderstand) {
    const Document document = add("Milk");
    const std::string& unid = document.unid;
    const std::string token = inform("C", {});
    const struct {
        std::uint32_t code;
        std::vector<std::string> strings;
        std::string message;
    } rows[] = {
        {350, {"0"}, "The request has 1 strings in the place of 2 or more."},
        {350, {"noon", "C"}, "'noon' is not a number."},
        {350, {"0", "c"}, "'c' is not a conflict rule."},
        {350, {"0", "C", "x", "y", "1"}, "The last item of the replication list is incomplete."},
        {350, {"0", "C", "x", "y", "one", "1"}, "'one' is not a number."},
        {350, {"0", "C", "x", "y", "1", "3"}, "'3' does not follow '1' as a sequence number."},
        {350, {"0", "C", "x", "y", "1", "0"}, "'0' does not follow '1' as a sequence number."},
        {359, {}, "The request has 0 strings in the place of 1."},
        {360, {token, "0"}, "The request has 2 strings in the place of 3."},
        {360, {token, "-1", "1"}, "'-1' is not a number."},
        {356, {token, ""}, "The request has 2 strings in the place of 1."},
        {357, {token, "0", "2"}, "Items are received one by one."},
        {355, {"", noDbid}, "The request has 2 strings in the place of 3 or more."},
        {355, {"", noDbid, noUnid, "Subject"}, "'Subject' is not a property."},
        {355, {"", noDbid, noUnid, "=Milk"}, "'=Milk' is not a property."},
        {361, {token, journal.dbid, unid}, "The request has 3 strings in the place of 4 or more."},
        {358, {journal.dbid}, "The last deletion has no document."},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.message);
        expectRefused(ask(row.code, row.strings), ResultCode::BadRequest, row.message);
    }
    EXPECT_THAT(subjects(), ElementsAre("Milk"));
}

TEST_F(ReplicationTest, RefusesWhatItDoesNotHave) {
    const Document document = add("Milk");
    const std::string token = inform("C", {});
    expectRefused(ask(357, {token, "1", "1"}), ResultCode::NotFound, "There is no item '1' to receive.");
    expectRefused(ask(355, {"", journal.dbid, document.unid}), ResultCode::NotFound,
                  "There is no replication ''.");
    expectRefused(ask(355, {token, journal.dbid, noUnid}), ResultCode::NotFound,
                  "There is no document '" + noUnid + "'.");
    expectRefused(ask(361, {token, journal.dbid, document.unid, "0"}), ResultCode::NotFound,
                  "No anomaly of the document '" + document.unid + "' was asked for.");
    for (const std::uint32_t code : {351, 353, 356, 359}) {
        expectRefused(ask(code, {"exchange 7"}), ResultCode::NotFound,
                      "There is no replication 'exchange 7'.");
    }
    remove("Milk"); // before it is fetched
    expectRefused(ask(357, {token, "0", "1"}), ResultCode::NotFound,
                  "There is no document '" + document.unid + "'.");
}

TEST_F(ReplicationTest, KnowsItsOwnTokensOnly) {
    const std::string token = inform("C", {});
    EXPECT_NE(inform("C", {}), token);
    EXPECT_EQ(ask(356, {token}).result, ResultCode::Success); // still there
    TesseraSession other(service);
    authenticate(other, "Ann");
    EXPECT_EQ(other.handle({356, {token}}).result, ResultCode::NotFound);
    ask(19, {});
    authenticate(session, "Ann");
    EXPECT_EQ(ask(356, {token}).result, ResultCode::NotFound);
}

// Frames as text: '/' stands for the unit that ends a string.
TEST_F(ReplicationTest, AnswersFrames) {
    const auto answer = [this](const std::string& request) {
        std::string units = request;
        std::replace(units.begin(), units.end(), '/', '\0');
        const auto frame = test::wide(units);
        const RequestHeader header =
            parseRequestHeader(std::span(frame).first<requestHeaderBytes>(), session.maxRequestBytes());
        EXPECT_EQ(header.bodyBytes, frame.size() - requestHeaderBytes) << request;
        const auto response = session.handleFrame(header, std::span(frame).subspan(requestHeaderBytes));
        std::string text;
        for (std::size_t i = 0; i < response.size(); i += 2) {
            text += response[i] == 0 ? '/' : static_cast<char>(response[i]);
        }
        return text;
    };
    const std::string& dbid = journal.dbid;
    const std::string zeros = noDbid + "/" + noUnid + "/";

    // 24 bytes of header, and 1 + 50 + 13 = 64 units; answered with 40 bytes and 17 + 33 + 2 = 52 units.
    const std::string sent = answer("000001520355/" + zeros + "Subject=Milk/");
    const std::string unid = find("Milk").unid;
    const std::string name = dbid + "/" + unid + "/";
    EXPECT_EQ(sent, "00000144035500000000" + name + "1/");

    // 24 + 2 * (10 + 2 + 50 + 2 + 2); the token has eleven units.
    EXPECT_EQ(answer("000001560350286934400/C/" + name + "1/2/"), "00000062035000000000exchange 1/");
    EXPECT_EQ(answer("000000460353exchange 1/"), "000000440353000000001/");
    EXPECT_EQ(answer("000000540354exchange 1/0/1/"), "000001440354000000001/" + name);
    EXPECT_EQ(answer("000001720355exchange 1/" + name + "Subject=Milk/"),
              "00000144035500000000" + name + "2/");
    EXPECT_EQ(answer("000000460351exchange 1/"), "000000440351000000000/");
    EXPECT_EQ(answer("000000540352exchange 1/0/0/"), "000000440352000000000/");

    // A conflict: known with 1, changed on both sides.
    EXPECT_EQ(answer("000001560350286934400/S/" + name + "1/2/"), "00000062035000000000exchange 2/");
    EXPECT_EQ(answer("000000460359exchange 2/"), "000000440359000000001/");
    EXPECT_EQ(answer("000000540360exchange 2/0/1/"), "000001440360000000001/" + name);
    const std::string anomaly = answer("000001760361exchange 2/" + name + "0/Subject=Brot/");
    EXPECT_EQ(anomaly, "00000144036100000000" + dbid + "/" + find("Brot").unid + "/1/");
    EXPECT_EQ(answer("000000460356exchange 2/"), "000000440356000000001/");
    // 13 + 22 + 38 + 9 units.
    EXPECT_EQ(answer("000000540357exchange 2/0/1/"),
              "00000204035700000000Subject=Milk/DBID=" + dbid + "/UNID=" + unid + "/SeqNum=2/");
    EXPECT_EQ(answer("000001240358" + name), "00000140035800000000" + name);
    // A refusal has a message, of 22 + 32 + 2 = 56 units, and no body.
    EXPECT_EQ(answer("000000540357exchange 2/0/1/"),
              "00000152035700060056There is no document '" + unid + "'.");
}

TEST_F(ReplicationTest, BringsBothSidesTogether) {
    MemoClient client(service);
    client.add("from the handheld");
    add("from Notes");
    const auto moves = client.synchronize();
    EXPECT_THAT(moves.sent, ElementsAre("from the handheld"));
    EXPECT_THAT(moves.received, ElementsAre("from Notes"));
    EXPECT_EQ(client.subjects(), (std::vector<std::string>{"from Notes", "from the handheld"}));
    expectAtRest(client);
    client.edit("from Notes", "edited on the handheld");
    change("from the handheld", "edited in Notes");
    client.synchronize();
    EXPECT_EQ(client.subjects(), (std::vector<std::string>{"edited in Notes", "edited on the handheld"}));
    expectAtRest(client);
}

TEST_F(ReplicationTest, CarriesDeletionsBothWays) {
    MemoClient client(service);
    for (const char* subject : {"a", "b", "c", "d"}) add(subject);
    client.synchronize();
    client.remove("a");
    remove("b");
    client.edit("c", "edited");
    remove("c"); // a deletion wins over an edit
    change("d", "edited too");
    client.remove("d");
    EXPECT_THAT(client.synchronize("S").deleted, UnorderedElementsAre("b", "edited"));
    EXPECT_THAT(client.subjects(), IsEmpty());
    expectAtRest(client);
    EXPECT_THAT(store.deletedUnids(journal.id), SizeIs(4));
}

TEST_F(ReplicationTest, TakesTheHandheldsSideOfAConflict) {
    MemoClient client(service);
    add("one");
    client.synchronize();
    client.edit("one", "handheld");
    change("one", "Notes");
    const auto moves = client.synchronize("C");
    EXPECT_THAT(moves.sent, ElementsAre("handheld"));
    EXPECT_THAT(moves.received, IsEmpty());
    EXPECT_THAT(subjects(), ElementsAre("handheld"));
    EXPECT_EQ(find("handheld").sequence, 3u); // 1 added, 2 changed in Notes
    expectAtRest(client);
}

TEST_F(ReplicationTest, KeepsBothSidesOfAConflict) {
    MemoClient client(service);
    const Document document = add("one");
    client.synchronize();
    client.edit("one", "handheld");
    change("one", "Notes");
    const auto moves = client.synchronize("S");
    EXPECT_THAT(moves.sentAnomalies, ElementsAre("handheld"));
    EXPECT_THAT(moves.received, ElementsAre("Notes"));
    EXPECT_EQ(find("Notes").unid, document.unid);
    EXPECT_EQ(client.subjects(), (std::vector<std::string>{"Notes", "handheld"}));
    expectAtRest(client, "S");
    client.edit("handheld", "edited");
    change("Notes", "changed");
    client.synchronize("S");
    EXPECT_EQ(client.subjects(), (std::vector<std::string>{"changed", "edited"}));
    expectAtRest(client, "S");
}

TEST_F(ReplicationTest, LosesNoEditWhenTheAnomalyIsRefused) {
    MemoClient client(service);
    add("one");
    client.synchronize();
    client.edit("one", "handheld");
    change("one", "Notes");
    service.orderFaults({.refusedItems = {1}});
    const auto moves = client.synchronize("S");
    EXPECT_THAT(moves.refused, SizeIs(1));
    EXPECT_THAT(moves.received, IsEmpty()); // it would replace what the handheld couldn't deliver
    EXPECT_EQ(client.subjects(), std::vector<std::string>{"handheld"});
    client.synchronize("S");
    EXPECT_EQ(client.subjects(), (std::vector<std::string>{"Notes", "handheld"}));
    expectAtRest(client, "S");
}

TEST_F(ReplicationTest, SendsRefusedItemsAgain) {
    MemoClient client(service);
    add("one");
    client.synchronize();
    client.add("two");
    client.edit("one", "edited");
    service.orderFaults({.refusedItems = {1, 2}});
    EXPECT_THAT(client.synchronize().refused, SizeIs(2));
    EXPECT_THAT(client.synchronize().sent, UnorderedElementsAre("edited", "two"));
    expectAtRest(client);
}

// What happens on both sides before a session that goes wrong.
void ReplicationTest::prepareChanges(MemoClient& client) {
    for (const char* subject : {"old", "edited", "changed", "conflict", "gone", "removed"}) add(subject);
    client.synchronize();
    client.add("new");
    client.add("twin");
    client.add("twin"); // equal, and still two
    client.edit("edited", "edited on the handheld");
    change("changed", "changed in Notes");
    client.edit("conflict", "the handheld's side");
    change("conflict", "Notes' side");
    remove("gone");
    client.remove("removed");
    add("another");
}

TEST_F(ReplicationTest, LosesAndDoublesNothingWhereverASessionBreaksOff) {
    const std::vector<std::string> expected{
        "Notes' side", "another", "changed in Notes",    "edited on the handheld",
        "new",         "old",     "the handheld's side", "twin",
        "twin"};
    const FaultOrders (*const orders[])(std::uint64_t) = {
        [](std::uint64_t n) -> const FaultOrders { return {.lostAnswers = {n}}; },
        [](std::uint64_t n) -> const FaultOrders { return {.failedRequests = {n}}; },
        [](std::uint64_t n) -> const FaultOrders { return {.refusedItems = {n}}; },
        [](std::uint64_t n) -> const FaultOrders {
            return {.lostAnswers = {n, n + 9}};
        }, // twice
    };
    for (const auto order : orders) {
        for (std::uint64_t number = 1; number <= 20; ++number) { // a session has 20 requests
            SCOPED_TRACE(number);
            startAnew();
            MemoClient client(service);
            prepareChanges(client);
            service.orderFaults(order(number));
            for (int i = 0; i < 3; ++i) {
                try {
                    client.synchronize("S");
                } catch (const ConnectionLost&) {
                } catch (const std::runtime_error&) {
                }
            }
            EXPECT_EQ(client.subjects(), expected);
            expectAtRest(client, "S");
        }
    }
}

TEST_F(ReplicationTest, GivesEqualItemsDocumentsOfTheirOwn) {
    const std::vector<std::string> item{"", noDbid, noUnid, "Subject=Milk"};
    const auto first = ask(355, item).strings;
    EXPECT_NE(ask(355, item).strings, first);
    ask(19, {});
    authenticate(session, "Ann");
    EXPECT_NE(ask(355, item).strings, first); // the session before was closed
    EXPECT_EQ(subjects().size(), 3u);
}

TEST_F(ReplicationTest, AnswersANewItemAsInTheSessionThatBrokeOff) {
    const std::vector<std::string> item{"", noDbid, noUnid, "Subject=Milk"};
    const auto first = ask(355, item).strings;
    const auto second = ask(355, item).strings;
    change("Milk", "Bread"); // of one of the two
    TesseraSession next(service);
    authenticate(next, "Ann");
    EXPECT_THAT((std::vector{next.handle({355, item}).strings, next.handle({355, item}).strings}),
                UnorderedElementsAre(first, second));
    EXPECT_EQ(subjects().size(), 2u);
    EXPECT_EQ(first.at(2), "1"); // so that the change is offered to the handheld
}

TEST_F(ReplicationTest, TakesAnItemForNotedOnceALaterSessionListsIt) {
    const std::vector<std::string> item{"", noDbid, noUnid, "Subject=Milk"};
    const std::string unid = ask(355, item).strings.at(1);
    inform("C", {journal.dbid, unid, "1", "1"}); // of the same session: it may break off yet
    EXPECT_THAT(store.unconfirmed(journal.id, "memo"), ElementsAre(unid));
    TesseraSession next(service);
    authenticate(next, "Ann");
    next.handle({350, {"286934400", "C", journal.dbid, unid, "1", "1"}});
    EXPECT_THAT(store.unconfirmed(journal.id, "memo"), IsEmpty());
    EXPECT_NE(next.handle({355, item}).strings.at(1), unid);
}

TEST_F(ReplicationTest, MakesADocumentForAnItemWhoseOwnWasDeleted) {
    const std::vector<std::string> item{"", noDbid, noUnid, "Subject=Milk"};
    const std::string unid = ask(355, item).strings.at(1);
    remove("Milk");
    TesseraSession next(service);
    authenticate(next, "Ann");
    EXPECT_NE(next.handle({355, item}).strings.at(1), unid);
    EXPECT_THAT(subjects(), ElementsAre("Milk"));
}

TEST_F(ReplicationTest, MakesNoDocumentOfAnAnomalyThatEqualsNotes) {
    const Document document = add("one");
    change("one", "two");
    const std::string token = inform("S", {journal.dbid, document.unid, "1", "2"});
    EXPECT_THAT(
        ask(361, {token, journal.dbid, document.unid, "0", "Body=", "Category=", "Subject=two"}).strings,
        ElementsAre(journal.dbid, document.unid, "2"));
    EXPECT_THAT(ask(356, {token}).strings, ElementsAre("0"));
    EXPECT_THAT(subjects(), ElementsAre("two"));
}

TEST_F(ReplicationTest, SendsEverythingToAHandheldThatWasReset) {
    MemoClient client(service);
    for (const char* subject : {"a", "b", "c"}) add(subject);
    client.synchronize();
    client.reset();
    EXPECT_THAT(client.synchronize().received, ElementsAre("a", "b", "c"));
    expectAtRest(client);
    client.reset();
    client.edit("b", "edited"); // known with 0, and modified: nobody knows whether Notes has changed it too
    const auto moves = client.synchronize("S");
    EXPECT_THAT(moves.sentAnomalies, ElementsAre("edited"));
    EXPECT_THAT(moves.received, ElementsAre("a", "c", "b"));
    EXPECT_EQ(client.subjects(), (std::vector<std::string>{"a", "b", "c", "edited"}));
    expectAtRest(client, "S");
}

TEST_F(ReplicationTest, HandlesFiftyThousandItems) {
    constexpr std::size_t count = 50'000;
    std::vector<std::string> entries;
    {
        SqliteTransaction transaction = store.transaction();
        for (std::size_t i = 0; i < count; ++i) {
            const Document document = add("x");
            entries.insert(entries.end(), {journal.dbid, document.unid, "1", i % 2 == 0 ? "1" : "2"});
        }
        transaction.commit();
    }
    std::vector<std::string> strings{"286934400", "C"};
    strings.insert(strings.end(), entries.begin(), entries.end());
    const auto frame = requestFrame(350, strings);
    EXPECT_EQ(frame.size(), 24 + 24 + count * 108); // 17 + 33 + 2 + 2 units each
    const RequestHeader header =
        parseRequestHeader(std::span(frame).first<requestHeaderBytes>(), session.maxRequestBytes());
    const std::string token = "exchange 1";
    EXPECT_EQ(bodyOf(session.handleFrame(header, std::span(frame).subspan(requestHeaderBytes))), token + "/");
    EXPECT_THAT(ask(353, {token}).strings, ElementsAre("25000"));
    EXPECT_THAT(ask(354, {token, "0", "25000"}).strings, SizeIs(50'001));
    EXPECT_THAT(ask(356, {token}).strings, ElementsAre("0"));
}

} // namespace
} // namespace tsr
