#include "server/ServerConnection.h"

#include <string>
#include <vector>

#include "foundation/GeneralError.h"
#include "foundation/ServerRequestError.h"
#include "support/ScriptedSocket.h"
#include "support/errors.h"
#include "support/wire.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

using test::ScriptedSocket;
using test::textRaisedBy;
using Strings = std::vector<std::string>;

class ServerConnectionTest : public testing::Test {
protected:
    void willAnswer(const Strings& strings) { socket->willReceive(test::responseOf(strings)); }
    void willRefuse(std::uint32_t code, const std::string& message) {
        socket->willReceive(test::responseFrame(code, message, {}));
    }

    // All that was sent, as one frame.
    ScriptedSocket::Bytes sent() const {
        ScriptedSocket::Bytes all;
        for (const auto& write : socket->writes) all.insert(all.end(), write.begin(), write.end());
        return all;
    }

    CountedPtr<ScriptedSocket> socket = makeCounted<ScriptedSocket>();
    ServerConnection connection{CountedPtr<IStreamSocket>(socket)};
};

TEST_F(ServerConnectionTest, AnExchangeGivesTheBodyOfTheResponse) {
    willAnswer({"one", "two"});
    ClientRequest request;
    request.setCode(33);
    request.addString("x");
    const CountedPtr<ClientResponse> response = connection.exchange(request);
    EXPECT_EQ(sent(), test::requestOf(33, {"x"}));
    EXPECT_EQ(socket->writes.size(), 2u);
    EXPECT_EQ(response->requestCode(), 33u);
    EXPECT_EQ(response->readString(), "one");
}

TEST_F(ServerConnectionTest, ResponsesDoNotShareABody) {
    ClientRequest request;
    willAnswer({"first", "of the first"});
    willAnswer({"second", "of the second"});
    willAnswer({"third"});
    CountedPtr<ClientResponse> first = connection.exchange(request);
    const CountedPtr<ClientResponse> second = connection.exchange(request);
    EXPECT_EQ(first->readString(), "first");
    EXPECT_EQ(second->readString(), "second");
    EXPECT_EQ(first->readString(), "of the first");
    first.reset(); // its memory goes to the third
    const CountedPtr<ClientResponse> third = connection.exchange(request);
    EXPECT_EQ(second->readString(), "of the second");
    EXPECT_EQ(third->readString(), "third");
    EXPECT_TRUE(third->atEnd());
}

TEST(ServerConnection, AResponseOutlivesIt) {
    const auto socket = makeCounted<ScriptedSocket>();
    socket->willReceive(test::responseOf({"still there"}));
    CountedPtr<ClientResponse> response;
    {
        ServerConnection connection{CountedPtr<IStreamSocket>(socket)};
        response = connection.exchange(ClientRequest());
    }
    EXPECT_EQ(response->readString(), "still there");
}

TEST_F(ServerConnectionTest, ARefusalLeavesTheConnectionInStep) {
    willRefuse(42, "Document locked");
    willAnswer({"next"});
    ClientRequest request;
    request.setCode(33);
    try {
        connection.exchange(request);
        ADD_FAILURE();
    } catch (const ServerRequestError& error) {
        EXPECT_EQ(error.requestCode(), 33u);
        EXPECT_EQ(error.errorCode(), 42u);
        EXPECT_EQ(errorText(error), "Document locked");
    }
    EXPECT_EQ(connection.exchange(request)->readString(), "next");
}

TEST_F(ServerConnectionTest, ARefusalWithoutAMessageHasNoText) {
    willRefuse(1, "");
    EXPECT_EQ(textRaisedBy<ServerRequestError>([&] { connection.close(); }), "");
}

TEST_F(ServerConnectionTest, ABrokenFrameIsNoRefusal) {
    socket->willReceive(test::wide("00000039    00010000"));
    EXPECT_EQ(textRaisedBy<GeneralError>([&] { connection.close(); }),
              "Tessera Services response has invalid header.");
}

TEST_F(ServerConnectionTest, FindsTheUserName) {
    const struct {
        Strings reply;
        const char* name;
    } rows[] = {
        {{"P", "dropped", "Ann Example/Acme"}, "Ann Example/Acme"},
        {{"P", "dropped"}, ""},
        {{"P", "dropped", "Ann", "Anne"}, ""},
        {{"G", "dropped", "Ann"}, ""},
        {{"p", "dropped", "Ann"}, ""},
        {{"", "", "Ann"}, ""},
        {{"P", "", ""}, ""},
    };
    for (const auto& row : rows) {
        willAnswer(row.reply);
        EXPECT_EQ(connection.findUserName(), row.name);
        EXPECT_EQ(sent(), test::requestOf(3, {}));
        socket->writes.clear();
    }
}

TEST_F(ServerConnectionTest, FindingTheUserNameNeedsBothStrings) {
    willAnswer({"P"});
    EXPECT_EQ(textRaisedBy([&] { connection.findUserName(); }), "Null terminator not found in string.");
}

TEST_F(ServerConnectionTest, AuthenticatesWithTenStrings) {
    socket->willReceive(test::responseFrame(0, "", test::wide("anything")));
    connection.authenticate({"host", "1352", "Ann Example", "secret", "287150000", "S"});
    EXPECT_EQ(sent(), test::requestOf(1, {"287150000", "Ann Example", "secret", "2.4.2.0", ".", "0", "", "",
                                          "Palm", "160x160"}));
    EXPECT_EQ(socket->writes.size(), 2u);
    EXPECT_TRUE(socket->isDrained());
}

TEST_F(ServerConnectionTest, AuthenticatesWithAnEmptyUserName) {
    willAnswer({});
    connection.authenticate({"host", "1352", "", "", "0", "C"});
    EXPECT_EQ(sent(), test::requestOf(1, {"0", "", "", "2.4.2.0", ".", "0", "", "", "Palm", "160x160"}));
}

TEST_F(ServerConnectionTest, AuthenticationFailsOnHalfACharacter) {
    socket->willReceive(test::responseFrame(0, "", {1, 2, 3}));
    EXPECT_EQ(textRaisedBy([&] { connection.authenticate({}); }),
              "Unable to read wide string - buffer length is odd.");
}

TEST_F(ServerConnectionTest, KeepsTheTimeZone) {
    EXPECT_EQ(connection.timeZone().offset(), 0);
    willAnswer({"2C010000" + std::string(80, '0')}); // 300 minutes west
    EXPECT_EQ(connection.getTimeZone().offset(), -18000);
    EXPECT_EQ(connection.timeZone().offset(), -18000);
    EXPECT_EQ(sent(), test::requestOf(7, {}));
}

TEST_F(ServerConnectionTest, ABadTimeZoneLeavesTheOld) {
    willAnswer({"2C010000" + std::string(80, '0')});
    connection.getTimeZone();
    for (const int bytes : {43, 45}) {
        willAnswer({std::string(2 * static_cast<std::size_t>(bytes), '0')});
        EXPECT_EQ(textRaisedBy([&] { connection.getTimeZone(); }),
                  "The time zone information received from the Tessera Server has invalid length ("
                      + std::to_string(bytes) + ").");
    }
    EXPECT_EQ(connection.timeZone().offset(), -18000);
}

TEST_F(ServerConnectionTest, GetsSessionErrors) {
    willAnswer({"dropped", "first", "", "second"});
    EXPECT_EQ(connection.getSessionErrors(), (Strings{"first", "", "second"}));
    EXPECT_EQ(sent(), test::requestOf(200, {}));
    willAnswer({"dropped"});
    EXPECT_EQ(connection.getSessionErrors(), Strings());
}

TEST_F(ServerConnectionTest, ClosesWithARequest) {
    willAnswer({"not read"});
    connection.close();
    EXPECT_EQ(sent(), test::requestOf(19, {}));
    EXPECT_EQ(socket->writes.size(), 2u); // the second has no bytes
}

TEST_F(ServerConnectionTest, FindsTheFirstMailDatabaseThereIs) {
    const struct {
        Strings reply;
        const char* database;
    } rows[] = {
        {{}, ""},
        {{"a", "", "b", ""}, ""},
        {{"a", "", "b", "0123456789abcdef", "c", "fedcba9876543210"}, "0123456789abcdef"},
    };
    for (const auto& row : rows) {
        willAnswer(row.reply);
        EXPECT_EQ(connection.findMailDatabase(), row.database);
        EXPECT_EQ(sent(), test::requestOf(324, {}));
        socket->writes.clear();
    }
    willAnswer({"alone"});
    EXPECT_EQ(textRaisedBy([&] { connection.findMailDatabase(); }), "Null terminator not found in string.");
}

TEST_F(ServerConnectionTest, AMissingMailDatabaseIsReportedUnderSeven) {
    willRefuse(9, "No mail file");
    try {
        connection.findMailDatabase();
        ADD_FAILURE();
    } catch (const ServerRequestError& error) {
        EXPECT_EQ(error.requestCode(), 7u);
        EXPECT_EQ(error.errorCode(), 9u);
    }
}

TEST_F(ServerConnectionTest, OtherRefusalsCarryTheirOwnCode) {
    const struct {
        std::uint32_t code;
        void (*ask)(ServerConnection&);
    } rows[] = {
        {3, [](ServerConnection& asked) { asked.findUserName(); }},
        {1, [](ServerConnection& asked) { asked.authenticate({}); }},
        {7, [](ServerConnection& asked) { asked.getTimeZone(); }},
        {200, [](ServerConnection& asked) { asked.getSessionErrors(); }},
        {19, [](ServerConnection& asked) { asked.close(); }},
    };
    for (const auto& row : rows) {
        willRefuse(5, "no");
        try {
            row.ask(connection);
            ADD_FAILURE() << row.code;
        } catch (const ServerRequestError& error) {
            EXPECT_EQ(error.requestCode(), row.code);
        }
    }
}

TEST(ServerConnection, CannotExchangeBeforeItIsConnected) {
    ServerConnection connection;
    const std::string text = textRaisedBy([&] { connection.close(); });
    EXPECT_TRUE(text.starts_with("Internal error occured at line ")) << text;
    EXPECT_TRUE(text.ends_with(" in ServerConnection.")) << text;
}

} // namespace
} // namespace tsr
