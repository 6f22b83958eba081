#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "foundation/ServerRequestError.h"
#include "server/ReplicatorImpl.h"
#include "server/commands.h"
#include "tessera/TcpServer.h"
#include "tessera/passwords.h"

namespace tsr {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// The conduit's own requests against the server, over a socket.
class ConduitRequestsTest : public ::testing::Test {
protected:
    ConduitRequestsTest()
        : service(store, [] { return std::int64_t{1012780800}; }), server(service, "127.0.0.1", 0) {
        User user;
        user.name = "Ann";
        store.addUser(user, hashPassword("secret", PasswordCost::Minimal));
        journal = store.database(store.findUser("Ann")->id, "journal");
        server.start();
        account = {"127.0.0.1", std::to_string(server.port()), "Ann", "secret", "286934400", "S"};
        connection.connect(account);
        connection.authenticate(account);
    }

    ItemId add(const std::string& subject) {
        return ItemId(journal.dbid, store.addDocument(journal.id, "memo", {{"Subject", {subject}}}).unid);
    }

    std::vector<ItemId> fetch(const std::string& token, std::uint32_t countCode, std::uint32_t fetchCode) {
        std::vector<ItemId> ids;
        ReplicatorImpl::fetchItemIds(connection, token, countCode, fetchCode, ids);
        return ids;
    }

    Store store = Store::inMemory();
    TesseraService service;
    TcpServer server;
    UserDatabase journal;
    ServerAccount account;
    ServerConnection connection;
};

TEST_F(ConduitRequestsTest, FindWhatIsToMove) {
    const ItemId wanted = add("wanted");
    const ItemId conflict = add("conflict");
    add("unknown");
    store.changeDocument(journal.id, conflict.unidText(), {});
    const ItemId gone(journal.dbid, std::string(32, 'f'));
    StringRun entries;
    for (const ItemId& id : {wanted, conflict, gone}) {
        for (const std::string& text : {id.dbidText(), id.unidText(), std::string("1"), std::string("2")})
            entries.add(text);
    }
    const std::string token =
        ReplicatorImpl::sendReplicationInfo(connection, account, memoCommands.sendReplicationInfo, entries);
    EXPECT_THAT(fetch(token, memoCommands.countWanted, memoCommands.fetchWanted), ElementsAre(wanted));
    EXPECT_THAT(fetch(token, memoCommands.countAnomalies, memoCommands.fetchAnomalies),
                ElementsAre(conflict));
    EXPECT_THAT(fetch(token, memoCommands.countDeleted, memoCommands.fetchDeleted), ElementsAre(gone));
    std::vector<std::string> indices;
    ReplicatorImpl::listItemIndices(connection, token, memoCommands.countToReceive, indices);
    EXPECT_THAT(indices, ElementsAre("0"));
}

TEST_F(ConduitRequestsTest, Delete) {
    const ItemId id = add("Milk");
    std::vector<ItemId> deleted;
    ReplicatorImpl::sendDeletions(connection, memoCommands.sendDeletions, false, {id}, deleted);
    EXPECT_THAT(deleted, ElementsAre(id));
    EXPECT_THAT(store.documents(journal.id, "memo"), IsEmpty());
}

TEST_F(ConduitRequestsTest, StayInStepBehindARefusal) {
    EXPECT_THROW(ReplicatorImpl::countItems(connection, "exchange 7", memoCommands.countWanted),
                 ServerRequestError);
    EXPECT_THAT(connection.getSessionErrors(), ElementsAre("There is no replication 'exchange 7'."));
    connection.close();
}

} // namespace
} // namespace tsr
