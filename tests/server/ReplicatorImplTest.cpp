#include "server/ReplicatorImpl.h"

#include <new>
#include <string>
#include <vector>

#include "server/commands.h"
#include "support/ScriptedSocket.h"
#include "support/errors.h"
#include "support/wire.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

using test::ScriptedSocket;
using test::textRaisedBy;
using Strings = std::vector<std::string>;
using Ids = std::vector<ItemId>;

const std::string dbidText = "0123456789abcdef";
const std::string unidA = "0000000000000000000000000000000a";
const std::string unidB = "0000000000000000000000000000000b";
const ItemId itemA(dbidText, unidA);
const ItemId itemB(dbidText, unidB);

class ReplicatorImplTest : public testing::Test {
protected:
    void willAnswer(const Strings& strings) { socket->willReceive(test::responseOf(strings)); }

    // The frames that were sent, each put together from its two writes.
    std::vector<ScriptedSocket::Bytes> sent() const {
        std::vector<ScriptedSocket::Bytes> frames;
        for (std::size_t i = 0; i + 1 < socket->writes.size(); i += 2) {
            frames.push_back(socket->writes[i]);
            frames.back().insert(frames.back().end(), socket->writes[i + 1].begin(),
                                 socket->writes[i + 1].end());
        }
        return frames;
    }

    using Frames = std::vector<ScriptedSocket::Bytes>;

    CountedPtr<ScriptedSocket> socket = makeCounted<ScriptedSocket>();
    ServerConnection connection{CountedPtr<IStreamSocket>(socket)};
    Ids ids;
};

TEST_F(ReplicatorImplTest, CountsItems) {
    willAnswer({"17"});
    EXPECT_EQ(ReplicatorImpl::countItems(connection, "token", 186), 17u);
    EXPECT_EQ(sent(), Frames{test::requestOf(186, {"token"})});
}

TEST_F(ReplicatorImplTest, RefusesACountThatIsNone) {
    willAnswer({"17x"});
    EXPECT_EQ(textRaisedBy([&] { ReplicatorImpl::countItems(connection, "token", 186); }),
              "Cannot convert string '17x' to unsigned.");
}

TEST_F(ReplicatorImplTest, RefusesACountThatNoDeviceCanHold) {
    willAnswer({"16777215"});
    EXPECT_EQ(ReplicatorImpl::countItems(connection, "token", 186), 16777215u);
    Strings indices;
    for (const char* count : {"16777216", "4294967295"}) {
        willAnswer({count});
        EXPECT_THROW(ReplicatorImpl::listItemIndices(connection, "token", 185, indices), std::bad_alloc);
        EXPECT_TRUE(indices.empty());
    }
}

TEST_F(ReplicatorImplTest, FetchesTheWholeList) {
    willAnswer({"2"});
    willAnswer({"99", dbidText, unidA, dbidText, unidB});
    ids = {itemB};
    ReplicatorImpl::fetchItemIds(connection, "token", 186, 187, ids);
    EXPECT_EQ(ids, (Ids{itemB, itemA, itemB})); // appended; the count of the reply isn't used
    EXPECT_EQ(sent(), (Frames{test::requestOf(186, {"token"}), test::requestOf(187, {"token", "0", "2"})}));
}

TEST_F(ReplicatorImplTest, FetchesAListOfNoItemsToo) {
    willAnswer({"0"});
    willAnswer({"0"});
    ReplicatorImpl::fetchItemIds(connection, "", 186, 187, ids);
    EXPECT_TRUE(ids.empty());
    EXPECT_EQ(sent(), (Frames{test::requestOf(186, {""}), test::requestOf(187, {"", "0", "0"})}));
}

TEST_F(ReplicatorImplTest, RefusesABadList) {
    const struct {
        Strings reply;
        std::string text;
    } rows[] = {
        {{""}, "Cannot convert string '' to unsigned."},
        {{"1", "xyz", unidA}, "'xyz' is an invalid representation of a DBID."},
        {{"1", dbidText, "xyz"}, "'xyz' is an invalid representation of a UNID."},
        {{"1", "xyz"}, "Null terminator not found in string."}, // both are read before either is parsed
        {{}, "Null terminator not found in string."},
    };
    for (const auto& row : rows) {
        willAnswer({"1"});
        willAnswer(row.reply);
        EXPECT_EQ(textRaisedBy([&] { ReplicatorImpl::fetchItemIds(connection, "token", 186, 187, ids); }),
                  row.text);
    }
}

TEST_F(ReplicatorImplTest, ListsIndices) {
    Strings indices = {"old"};
    willAnswer({"3"});
    ReplicatorImpl::listItemIndices(connection, "token", 185, indices);
    EXPECT_EQ(indices, (Strings{"0", "1", "2"}));
    willAnswer({"0"});
    ReplicatorImpl::listItemIndices(connection, "token", 185, indices);
    EXPECT_TRUE(indices.empty());
    EXPECT_EQ(sent().size(), 2u); // a count each, and nothing more
}

TEST_F(ReplicatorImplTest, FetchesRunsOfUnids) {
    ids = {itemB};
    willAnswer({unidA, unidB});
    ReplicatorImpl::fetchUnidRun(connection, 311, "token", dbidText, ids);
    EXPECT_EQ(ids, (Ids{itemB, itemA, itemB}));
    EXPECT_EQ(sent(), Frames{test::requestOf(311, {"token"})});
    willAnswer({"short"});
    EXPECT_EQ(textRaisedBy([&] { ReplicatorImpl::fetchUnidRun(connection, 311, "token", dbidText, ids); }),
              "'short' is an invalid representation of a UNID.");
}

TEST_F(ReplicatorImplTest, ListsUnidsAsHandles) {
    Strings handles = {"old"};
    willAnswer({"0000000000000000000000000000000A", unidB});
    ReplicatorImpl::listUnidRun(connection, "token", dbidText, 312, handles);
    EXPECT_EQ(handles, (Strings{unidA, unidB}));
    EXPECT_EQ(sent(), Frames{test::requestOf(312, {"token"})});
}

TEST_F(ReplicatorImplTest, SendsDeletions) {
    willAnswer({dbidText, unidB});
    ReplicatorImpl::sendDeletions(connection, 358, false, {itemA, itemB}, ids);
    EXPECT_EQ(ids, Ids{itemB});
    EXPECT_EQ(sent(), Frames{test::requestOf(358, {dbidText, unidA, dbidText, unidB})});
}

TEST_F(ReplicatorImplTest, DropsTheCountThatAddressSends) {
    willAnswer({"not parsed", dbidText, unidB});
    ReplicatorImpl::sendDeletions(connection, 191, true, {itemA, itemB}, ids);
    EXPECT_EQ(ids, Ids{itemB});
    willAnswer({});
    EXPECT_EQ(textRaisedBy([&] { ReplicatorImpl::sendDeletions(connection, 191, true, {itemA}, ids); }),
              "Null terminator not found in string.");
}

TEST_F(ReplicatorImplTest, SendsDeletionsOfMail) {
    willAnswer({unidB});
    ReplicatorImpl::sendMailDeletions(connection, 305, dbidText, {itemA, itemB}, ids);
    EXPECT_EQ(ids, Ids{itemB});
    EXPECT_EQ(sent(), Frames{test::requestOf(305, {dbidText, unidA, unidB})});
}

TEST_F(ReplicatorImplTest, SendsReplicationInfo) {
    const ServerAccount account{"host", "1352", "Ann", "secret", "287150000", "S"};
    StringRun entries;
    for (const std::string& text : {dbidText, unidA, std::string("4"), std::string("5")}) entries.add(text);
    willAnswer({"the token"});
    EXPECT_EQ(ReplicatorImpl::sendReplicationInfo(connection, account, 80, "1", "2", entries), "the token");
    willAnswer({"another"});
    EXPECT_EQ(ReplicatorImpl::sendReplicationInfo(connection, account, 350, entries), "another");
    EXPECT_EQ(sent(), (Frames{test::requestOf(80, {"287150000", "S", "1", "2", dbidText, unidA, "4", "5"}),
                              test::requestOf(350, {"287150000", "S", dbidText, unidA, "4", "5"})}));
}

TEST_F(ReplicatorImplTest, KeepsBeforeASecondBadPairWhatCameBefore) {
    willAnswer({dbidText, unidA, "bad", unidB});
    EXPECT_EQ(textRaisedBy([&] { ReplicatorImpl::sendDeletions(connection, 358, false, {itemA}, ids); }),
              "'bad' is an invalid representation of a DBID.");
    EXPECT_EQ(ids, Ids{itemA});
}

} // namespace
} // namespace tsr
