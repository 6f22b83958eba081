#include "tessera/Application.h"

#include <set>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tessera/RequestRefused.h"
#include "tessera/replicationRequests.h"

namespace tsr {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// A document is what the handheld has sent.
Properties adoptAll(const Properties&, const Properties& sent) { return sent; }

const std::string noDbid(16, '0');
const std::string noUnid(32, '0');

// Everything that a table can say, over the journal: two strings before the known items, four before the
// properties, and longer answers.
const Application cards{.databaseKind = "journal",
                        .documentKind = "card",
                        .commands = addressCommands,
                        .adopt = adoptAll,
                        .infoStrings = 2,
                        .itemStrings = 4,
                        .countsDeletions = true,
                        .tellsReplacedUnid = true};

// Without anomalies.
const Application tasks{.databaseKind = "journal",
                        .documentKind = "task",
                        .commands = toDoCommands,
                        .adopt = adoptAll,
                        .infoStrings = 2,
                        .itemStrings = 2};

class ApplicationsTest : public ::testing::Test {
protected:
    ApplicationsTest() {
        User user;
        user.name = "Ann";
        store.addUser(user, "");
        session.userId = store.findUser("Ann")->id;
        journal = store.database(*session.userId, "journal");
    }

    std::vector<std::string> ask(const Application& application, std::uint32_t code,
                                 const std::vector<std::string>& strings) {
        for (const Route& route : replicationRoutes(application)) {
            if (route.code == code) return route.answer({store, session, 0, strings, faults});
        }
        throw std::runtime_error("no such request");
    }

    Store store = Store::inMemory();
    SessionState session;
    FaultPlan faults;
    UserDatabase journal;
};

TEST_F(ApplicationsTest, TakesItemsBehindTheStringsOfTheApplication) {
    const auto strings = ask(cards, 33, {"", noDbid, noUnid, "", "", "", "", "FullName=Pat"});
    const auto documents = store.documents(journal.id, "card");
    ASSERT_EQ(documents.size(), 1u);
    EXPECT_THAT(strings, ElementsAre(journal.dbid, documents[0].unid, "1"));
    EXPECT_EQ(documents[0].properties, (Properties{{"FullName", {"Pat"}}}));
    EXPECT_THROW(ask(cards, 33, {"", noDbid, noUnid, "", "", ""}), RequestRefused);
}

TEST_F(ApplicationsTest, TakesKnownItemsBehindTheStringsOfTheApplication) {
    const std::string unid = store.addDocument(journal.id, "card", {}).unid;
    const std::string token = ask(cards, 34, {"0", "C", "", "", journal.dbid, unid, "1", "2"}).at(0);
    EXPECT_THAT(ask(cards, 184, {token, "0", "9"}), ElementsAre("1", journal.dbid, unid));
    EXPECT_THROW(ask(cards, 34, {"0", "C", ""}), RequestRefused);
}

TEST_F(ApplicationsTest, NamesTheReplacedDocumentOfAnAnomaly) {
    const std::string unid = store.addDocument(journal.id, "card", {}).unid;
    store.changeDocument(journal.id, unid, {});
    const std::string token = ask(cards, 34, {"0", "S", "", "", journal.dbid, unid, "1", "2"}).at(0);
    const auto strings = ask(cards, 190, {token, journal.dbid, unid, "0", "FullName=Pat"});
    const auto documents = store.documents(journal.id, "card");
    ASSERT_EQ(documents.size(), 2u);
    EXPECT_THAT(strings, ElementsAre(journal.dbid, unid, documents[1].unid, "1"));
}

TEST_F(ApplicationsTest, CountsDeletions) {
    const std::string unid = store.addDocument(journal.id, "card", {}).unid;
    EXPECT_THAT(ask(cards, 191, {journal.dbid, unid}), ElementsAre("1", journal.dbid, unid));
    EXPECT_THAT(ask(cards, 191, {}), ElementsAre("0"));
}

// A conflict under "S" where there is no request for anomalies.
class CopyTest : public ApplicationsTest {
protected:
    CopyTest() : unid(store.addDocument(journal.id, "task", {}).unid) {
        store.changeDocument(journal.id, unid, {{"a", {"Notes"}}});
        token = inform();
    }

    std::string inform() { return ask(tasks, 172, {"0", "S", "", "", journal.dbid, unid, "1", "2"}).at(0); }
    std::vector<std::string> send(const std::string& property) {
        return ask(tasks, 176, {token, journal.dbid, unid, "", "", property});
    }
    std::vector<std::string> receive(const std::string& index) {
        return ask(tasks, 177, {token, index, "1"});
    }

    std::string unid;
    std::string token;
};

TEST_F(CopyTest, WantsTheHandheldsVersionAndKeepsBoth) {
    EXPECT_THAT(ask(tasks, 170, {token}), ElementsAre("0"));
    EXPECT_THAT(ask(tasks, 164, {token, "0", "9"}), ElementsAre("1", journal.dbid, unid));
    EXPECT_THAT(ask(tasks, 168, {token}), ElementsAre("0")); // not before the handheld's version is here
    EXPECT_THAT(send("a=handheld"), ElementsAre(journal.dbid, unid, "2"));
    EXPECT_THAT(ask(tasks, 168, {token}), ElementsAre("2"));
    const auto documents = store.documents(journal.id, "task");
    ASSERT_EQ(documents.size(), 2u);
    EXPECT_THAT(receive("0"), ElementsAre("a=Notes", "DBID=" + journal.dbid, "UNID=" + unid, "SeqNum=2"));
    EXPECT_THAT(receive("1"),
                ElementsAre("a=handheld", "DBID=" + journal.dbid, "UNID=" + documents[1].unid, "SeqNum=1"));
}

TEST_F(CopyTest, TakesAVersionThatIsSentTwiceOnce) {
    send("a=handheld");
    EXPECT_THAT(send("a=handheld"), ElementsAre(journal.dbid, unid, "2"));
    EXPECT_EQ(store.documents(journal.id, "task").size(), 2u);
    EXPECT_THAT(ask(tasks, 168, {token}), ElementsAre("2"));
}

TEST_F(CopyTest, MakesNoCopyOfAnEqualVersion) {
    EXPECT_THAT(send("a=Notes"), ElementsAre(journal.dbid, unid, "2"));
    EXPECT_EQ(store.documents(journal.id, "task").size(), 1u);
    EXPECT_THAT(ask(tasks, 168, {token}), ElementsAre("0"));
}

TEST_F(CopyTest, GivesEachOnceWhenTheSessionBeforeBrokeOff) {
    send("a=handheld");
    session.newDocuments.clear(); // as with a new session
    token = inform();
    EXPECT_THAT(ask(tasks, 168, {token}), ElementsAre("1")); // the copy, which no handheld knows
    send("a=handheld");
    EXPECT_EQ(store.documents(journal.id, "task").size(), 2u);
    EXPECT_THAT(ask(tasks, 168, {token}), ElementsAre("2"));
}

TEST_F(ApplicationsTest, KeepsApplicationsApart) {
    const std::string token = ask(cards, 34, {"0", "C", "", ""}).at(0);
    EXPECT_THROW(ask(tasks, 168, {token}), RequestRefused);
    store.addDocument(journal.id, "task", {});
    const std::string other = ask(cards, 34, {"0", "C", "", ""}).at(0);
    EXPECT_THAT(ask(cards, 185, {other}), ElementsAre("0"));
}

TEST(Applications, AreServedUnderCodesOfTheirOwn) {
    std::set<std::uint32_t> codes;
    for (const Application& application : applications()) {
        for (const Route& route : replicationRoutes(application)) {
            EXPECT_TRUE(codes.insert(route.code).second) << route.code;
            EXPECT_FALSE(route.beforeAuthentication);
        }
    }
    EXPECT_EQ(codes.size(), 3u * 12 + 11); // contacts, meetings, memos, and tasks, which have no anomalies
}

} // namespace
} // namespace tsr
