// Items as they cross the wire.

#include <string>
#include <vector>

#include "foundation/ServerRequestError.h"
#include "server/NotesItem.h"
#include "server/ReplicatorImpl.h"
#include "support/ScriptedSocket.h"
#include "support/errors.h"
#include "support/wire.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

using test::ScriptedSocket;
using test::textRaisedBy;
using Strings = std::vector<std::string>;

const std::string dbidText = "0123456789abcdef";
const std::string otherDbid = "fedcba9876543210";
const std::string unidA = "0000000000000000000000000000000a";
const std::string unidB = "0000000000000000000000000000000b";
const std::string noDbid = "0000000000000000";
const std::string noUnid = "00000000000000000000000000000000";
const ItemId itemA(dbidText, unidA);

TEST(NotesItem, GivesTheFirstValue) {
    const NotesItem item{{"None", {}}, {"One", {"a"}}, {"Two", {"b", "c"}}};
    const struct {
        std::string name;
        std::string value;
        bool present;
    } rows[] = {
        {"None", "", true}, // present without a value
        {"One", "a", true},
        {"Two", "b", true},
        {"Absent", "", false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(firstValue(item, row.name), row.value);
        EXPECT_EQ(hasProperty(item, row.name), row.present);
    }
}

TEST(NotesItem, NormalizesLineEndsOnRequest) {
    const NotesItem item{{"Body", {"a\r\nb\rc\nd\r\r\n"}}};
    EXPECT_EQ(normalizedValue(item, "Body"), "a\nb\nc\nd\n\n");
    EXPECT_EQ(firstValue(item, "Body"), "a\r\nb\rc\nd\r\r\n");
    EXPECT_EQ(normalizedValue(item, "Absent"), "");
}

TEST(NotesItem, KeepsValuesInTheOrderOfAdding) {
    NotesItem item;
    addValue(item, "Category", "b");
    addValue(item, "Category", "a");
    EXPECT_EQ(item, (NotesItem{{"Category", {"b", "a"}}}));
}

class ItemsTest : public testing::Test {
protected:
    void willAnswer(const Strings& strings) { socket->willReceive(test::responseOf(strings)); }

    ItemVersion receive() {
        return ReplicatorImpl::receiveItem(connection, "token", "Memo items", "3", 357, item);
    }

    // The one request that was sent.
    ScriptedSocket::Bytes sent() const {
        EXPECT_EQ(socket->writes.size(), 2u);
        ScriptedSocket::Bytes frame = socket->writes[0];
        frame.insert(frame.end(), socket->writes[1].begin(), socket->writes[1].end());
        return frame;
    }

    CountedPtr<ScriptedSocket> socket = makeCounted<ScriptedSocket>();
    ServerConnection connection{CountedPtr<IStreamSocket>(socket)};
    NotesItem item;
    std::string newUnid = "old";
};

TEST_F(ItemsTest, ReceivesAnItem) {
    willAnswer(
        {"Subject=Lunch", "UNID=" + unidA, "DBID=" + dbidText, "SeqNum=7", "Category=b", "Category=a"});
    item = {{"Left", {"over"}}};
    EXPECT_EQ(receive(), ItemVersion(itemA, 7));
    EXPECT_EQ(item, (NotesItem{{"#ClassName", {"Memo items"}},
                               {"Category", {"b", "a"}},
                               {"DBID", {dbidText}},
                               {"SeqNum", {"7"}},
                               {"Subject", {"Lunch"}},
                               {"UNID", {unidA}}}));
    EXPECT_EQ(sent(), test::requestOf(357, {"token", "3", "1"}));
}

TEST_F(ItemsTest, TakesTheLaterOfTwoIdentities) {
    willAnswer(
        {"UNID=" + unidB, "UNID=" + unidA, "DBID=" + otherDbid, "DBID=" + dbidText, "SeqNum=x", "SeqNum=7"});
    EXPECT_EQ(receive(), ItemVersion(itemA, 7));
    EXPECT_EQ(item.at("UNID"), (Strings{unidB, unidA})); // the item keeps both
    EXPECT_EQ(item.at("DBID"), (Strings{otherDbid, dbidText}));
    EXPECT_EQ(item.at("SeqNum"), (Strings{"x", "7"}));
}

TEST_F(ItemsTest, DividesAPropertyAtTheFirstEqualsSign) {
    willAnswer({"UNID=" + unidA, "DBID=" + dbidText, "SeqNum=7", "a=b=c", "b=", "=c", "a=d"});
    receive();
    EXPECT_EQ(item.at("a"), (Strings{"b=c", "d"})); // a value may hold the separator
    EXPECT_EQ(item.at("b"), Strings{""});           // and may be empty
    EXPECT_EQ(item.at(""), Strings{"c"});
}

TEST_F(ItemsTest, NamesThatAreAlmostThoseOfTheIdentityMeanNothing) {
    willAnswer({"UNID=" + unidA, "DBID=" + dbidText, "SeqNum=7", "unid=x", "UNID2=x", "#UNID=x", "seqnum=x"});
    EXPECT_EQ(receive(), ItemVersion(itemA, 7));
}

TEST_F(ItemsTest, AddsTheClassBehindWhatTheServerCallsSo) {
    willAnswer({"#ClassName=theirs", "UNID=" + unidA, "DBID=" + dbidText, "SeqNum=7"});
    receive();
    EXPECT_EQ(item.at("#ClassName"), (Strings{"theirs", "Memo items"}));
}

TEST_F(ItemsTest, RefusesABadItem) {
    const std::string dbid = "DBID=" + dbidText;
    const std::string unid = "UNID=" + unidA;
    const struct {
        Strings reply;
        std::string text;
    } rows[] = {
        {{unid, dbid, "SeqNum=7", "Subject"}, "The string 'Subject' is not a valid string pair."},
        {{unid, dbid, "SeqNum=7", ""}, "The string '' is not a valid string pair."},
        {{unid, dbid}, "No sequence number was found on an item received from Notes."},
        {{}, "No sequence number was found on an item received from Notes."},
        {{unid, dbid, "SeqNum="}, "No sequence number was found on an item received from Notes."},
        {{unid, dbid, "SeqNum=7", "SeqNum="},
         "No sequence number was found on an item received from Notes."},             // the later one counts
        {{"UNID=x"}, "No sequence number was found on an item received from Notes."}, // which comes first
        {{dbid, "SeqNum=7"}, "'' is an invalid representation of a UNID."},
        {{unid, "SeqNum=7"}, "'' is an invalid representation of a DBID."},
        {{unid, "DBID=12", "SeqNum=7"}, "'12' is an invalid representation of a DBID."},
        {{unid + "0", dbid, "SeqNum=7"}, "'" + unidA + "0' is an invalid representation of a UNID."},
        {{unid, dbid, "SeqNum=-7"}, "Cannot convert string '-7' to unsigned."},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.reply));
        willAnswer(row.reply);
        EXPECT_EQ(textRaisedBy([&] { receive(); }), row.text);
    }
}

TEST_F(ItemsTest, RefusesAnItemThatIsCutShort) {
    const ScriptedSocket::Bytes body =
        test::wireStrings({"UNID=" + unidA, "DBID=" + dbidText, "SeqNum=7", "A=bc"});
    for (const std::ptrdiff_t missing : {1, 2, 3, 8}) { // within the terminator, at it, and before
        SCOPED_TRACE(missing);
        socket->willReceive(test::responseFrame(0, "", {body.begin(), body.end() - missing}));
        EXPECT_EQ(textRaisedBy([&] { receive(); }), "Null terminator not found in string.");
    }
}

TEST_F(ItemsTest, TellsOfAServerThatRefuses) {
    socket->willReceive(test::responseFrame(9, "Not today", {}));
    EXPECT_EQ(textRaisedBy<ServerRequestError>([&] { receive(); }), "Not today");
    socket->willReceive(test::responseFrame(9, "Nor that", {}));
    EXPECT_EQ(textRaisedBy<ServerRequestError>(
                  [&] { ReplicatorImpl::sendMemoItem(connection, "", ItemId(), item); }),
              "Nor that");
}

TEST_F(ItemsTest, ReceivesMailOfItsDatabase) {
    willAnswer({"UNID=" + unidA, "DBID=" + otherDbid, "SeqNum=7"});
    EXPECT_EQ(ReplicatorImpl::receiveMailItem(connection, "Mail", dbidText, unidA, 317, 4000, item),
              ItemVersion(itemA, 7)); // the database that was asked wins over what the item says
    EXPECT_EQ(item.at("#ClassName"), Strings{"Mail"});
    EXPECT_EQ(item.at("DBID"), Strings{otherDbid});
    EXPECT_EQ(sent(), test::requestOf(317, {dbidText, unidA, "4000"}));
}

TEST_F(ItemsTest, RefusesMailOfABadDatabase) {
    willAnswer({"UNID=" + unidA, "DBID=" + dbidText, "SeqNum=7"});
    EXPECT_EQ(textRaisedBy(
                  [&] { ReplicatorImpl::receiveMailItem(connection, "Mail", "", unidA, 317, 4000, item); }),
              "'' is an invalid representation of a DBID.");
}

TEST_F(ItemsTest, SendsANewMemo) {
    willAnswer({dbidText, unidA, "1"});
    item = {{"Subject", {"Lunch"}}, {"#Differences", {"0"}}, {"Body", {""}}};
    EXPECT_EQ(ReplicatorImpl::sendMemoItem(connection, "", ItemId(), item), ItemVersion(itemA, 1));
    EXPECT_EQ(sent(), test::requestOf(355, {"", noDbid, noUnid, "#Differences=0", "Body=", "Subject=Lunch"}));
}

TEST_F(ItemsTest, SendsPropertiesByNameAndValuesInTheirOrder) {
    willAnswer({dbidText, unidA, "8"});
    addValue(item, "b", "2");
    addValue(item, "Z", "");
    addValue(item, "b", "1=0");
    addValue(item, "a", "x");
    addValue(item, "b", "3");
    item["Empty"]; // no value, and so no string
    ReplicatorImpl::sendMemoItem(connection, "token", itemA, item);
    EXPECT_EQ(sent(), test::requestOf(355, {"token", dbidText, unidA, "Z=", "a=x", "b=2", "b=1=0", "b=3"}));
}

TEST_F(ItemsTest, SendsAnAddress) {
    willAnswer({dbidText, unidA, "8"});
    item = {{"LastName", {"Muster"}}};
    EXPECT_EQ(ReplicatorImpl::sendAddressItem(connection, "token", itemA, item), ItemVersion(itemA, 8));
    EXPECT_EQ(sent(), test::requestOf(33, {"token", dbidText, unidA, "", "", "", "", "LastName=Muster"}));
}

TEST_F(ItemsTest, SendsAToDo) {
    willAnswer({dbidText, unidA, "8"});
    item = {{"#Differences", {"0"}}};
    EXPECT_EQ(ReplicatorImpl::sendToDoItem(connection, "token", itemA, item), ItemVersion(itemA, 8));
    EXPECT_EQ(sent(), test::requestOf(176, {"token", dbidText, unidA, "", "", "#Differences=0"}));
}

TEST_F(ItemsTest, SendsAMeeting) {
    const struct {
        NotesItem item;
        std::string differences;
        Strings properties;
    } rows[] = {
        {{{"Chair", {"Ann"}}}, "0", {"Chair=Ann"}},
        {{{"#Differences", {"1"}}, {"Chair", {"Ann"}}}, "1", {"#Differences=1", "Chair=Ann"}},
        {{{"#Differences", {"0"}}}, "0", {"#Differences=0"}}, // a property like any other
        {{{"#Differences", {""}}}, "0", {"#Differences="}},
        {{{"#Differences", {"1", "2"}}}, "1", {"#Differences=1", "#Differences=2"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.properties));
        socket->writes.clear();
        willAnswer({dbidText, unidA, "8"});
        EXPECT_EQ(ReplicatorImpl::sendDateBookItem(connection, "token", itemA, "100", "200", row.item),
                  ItemVersion(itemA, 8));
        Strings strings = {"token", dbidText, unidA, "", "", "100", "200", row.differences};
        strings.insert(strings.end(), row.properties.begin(), row.properties.end());
        EXPECT_EQ(sent(), test::requestOf(99, strings));
    }
}

TEST_F(ItemsTest, SendsMail) {
    willAnswer({unidB, "8"});
    item = {{"Subject", {"Lunch"}}};
    EXPECT_EQ(ReplicatorImpl::sendMailItem(connection, otherDbid, "Mail", itemA, item),
              ItemVersion(ItemId(dbidText, unidB), 8));
    EXPECT_EQ(sent(), test::requestOf(316, {dbidText, unidA, "Mail", "0", "Subject=Lunch"}));
}

TEST_F(ItemsTest, SendsNewMailToTheMailDatabase) {
    willAnswer({unidA, "1"});
    EXPECT_EQ(ReplicatorImpl::sendMailItem(connection, dbidText, "Mail", ItemId(), item),
              ItemVersion(itemA, 1));
    EXPECT_EQ(sent(), test::requestOf(316, {dbidText, noUnid, "Mail", "0"}));
}

TEST_F(ItemsTest, SendsNoMailWithoutADatabase) {
    EXPECT_EQ(textRaisedBy([&] { ReplicatorImpl::sendMailItem(connection, "none", "Mail", ItemId(), item); }),
              "'none' is an invalid representation of a DBID.");
    EXPECT_TRUE(socket->writes.empty());
}

TEST_F(ItemsTest, SendsOutgoingMail) {
    willAnswer({});
    item = {{"To", {"Ann"}}, {"#UNID", {unidA}}, {"Subject", {"a=b"}}, {"Body", {""}}};
    ReplicatorImpl::sendOutgoingMail(connection, dbidText, "NC1N100", unidA, item);
    EXPECT_EQ(sent(), test::requestOf(318, {dbidText, "NC1N100", unidA, "0", "#UNID=" + unidA,
                                            "Body=", "Subject=a=b", "To=Ann"}));
}

TEST_F(ItemsTest, TheAnswerToOutgoingMailSaysNothing) {
    for (const Strings& answer : {Strings{"x"}, Strings{"", ""}, Strings{unidA, "1"}}) {
        willAnswer(answer);
        ReplicatorImpl::sendOutgoingMail(connection, dbidText, "NN2N000", noUnid, {});
    }
    EXPECT_EQ(socket->writes.size(), 6u); // header and body of each
}

TEST_F(ItemsTest, SendsOutgoingMailToADatabaseThatItKnowsByTextAlone) {
    willAnswer({});
    ReplicatorImpl::sendOutgoingMail(connection, "none", "", "", {});
    EXPECT_EQ(sent(), test::requestOf(318, {"none", "", "", "0"}));
}

TEST_F(ItemsTest, TellsWhyOutgoingMailWasRefused) {
    socket->willReceive(test::responseFrame(9, "Nobody has this name.", {}));
    EXPECT_EQ(textRaisedBy<ServerRequestError>(
                  [&] { ReplicatorImpl::sendOutgoingMail(connection, dbidText, "NN2N000", noUnid, {}); }),
              "Nobody has this name.");
}

TEST_F(ItemsTest, SendsAnAnomaly) {
    willAnswer({dbidText, unidB, "8"});
    item = {{"Subject", {"Lunch"}}};
    EXPECT_EQ(ReplicatorImpl::sendAnomalyItem(connection, "token", 361, itemA, item, false, newUnid),
              ItemVersion(ItemId(dbidText, unidB), 8));
    EXPECT_EQ(newUnid, unidB);
    EXPECT_EQ(sent(), test::requestOf(361, {"token", dbidText, unidA, "0", "Subject=Lunch"}));
}

TEST_F(ItemsTest, TakesTheNewIdentityOfAnAddressFromAStringOfItsOwn) {
    willAnswer({dbidText, unidA, unidB, "8"});
    EXPECT_EQ(ReplicatorImpl::sendAnomalyItem(connection, "token", 190, itemA, item, true, newUnid),
              ItemVersion(itemA, 8));
    EXPECT_EQ(newUnid, unidB);
    willAnswer({dbidText, unidA, "", "8"});
    ReplicatorImpl::sendAnomalyItem(connection, "token", 190, itemA, item, true, newUnid);
    EXPECT_EQ(newUnid, ""); // there is none
}

TEST_F(ItemsTest, RefusesABadReplyToWhatWasSent) {
    const struct {
        Strings reply;
        std::string text;
    } rows[] = {
        {{"x", unidA, "8"}, "'x' is an invalid representation of a DBID."},
        {{dbidText, "x", "8"}, "'x' is an invalid representation of a UNID."},
        {{dbidText, unidA, "x"}, "Cannot convert string 'x' to unsigned."},
        {{dbidText, unidA, ""}, "Cannot convert string '' to unsigned."},
        {{"x", unidA}, "Null terminator not found in string."}, // all are read before one is parsed
        {{}, "Null terminator not found in string."},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.reply));
        willAnswer(row.reply);
        EXPECT_EQ(textRaisedBy([&] { ReplicatorImpl::sendMemoItem(connection, "token", itemA, item); }),
                  row.text);
        willAnswer(row.reply);
        EXPECT_EQ(textRaisedBy([&] {
                      ReplicatorImpl::sendAnomalyItem(connection, "token", 361, itemA, item, false, newUnid);
                  }),
                  row.text);
    }
}

} // namespace
} // namespace tsr
