#include "tessera/TcpServer.h"

#include <memory>

#include <gtest/gtest.h>

#include "RawClient.h"
#include "tessera/TesseraError.h"
#include "tessera/passwords.h"

namespace tsr {
namespace {

using test::bodyOf;
using test::RawClient;
using test::requestFrame;
using test::resultOf;
using test::wide;

const std::vector<std::uint8_t> findUserName = requestFrame(3, {});
const std::vector<std::uint8_t> authenticate =
    requestFrame(1, {"286934400", "Ann", "secret", "2.4.2.0", ".", "0", "", "", "Palm", "160x160"});
const std::vector<std::uint8_t> getTimeZone = requestFrame(7, {});

class TcpServerTest : public ::testing::Test {
protected:
    TcpServerTest() : service(store, [] { return std::int64_t{1012780800}; }) {
        User user;
        user.name = "Ann";
        store.addUser(user, hashPassword("secret", PasswordCost::Minimal));
        serve(TcpServer::defaultMaxConnections);
    }

    void serve(std::size_t maxConnections) {
        server = std::make_unique<TcpServer>(service, "127.0.0.1", 0, maxConnections);
        server->start();
    }

    void expectServed() {
        RawClient client(server->port());
        EXPECT_EQ(bodyOf(client.ask(findUserName)), "P/Tessera/Ann/");
    }

    Store store = Store::inMemory();
    TesseraService service;
    std::unique_ptr<TcpServer> server;
};

TEST_F(TcpServerTest, AnswersOneRequestAfterTheOther) {
    RawClient client(server->port());
    EXPECT_EQ(bodyOf(client.ask(findUserName)), "P/Tessera/Ann/");
    EXPECT_EQ(resultOf(client.ask(authenticate)), "0000");
    EXPECT_EQ(bodyOf(client.ask(getTimeZone)), std::string(88, '0') + "/");
    EXPECT_EQ(resultOf(client.ask(requestFrame(19, {}))), "0000");
}

TEST_F(TcpServerTest, KeepsItsClientsApart) {
    RawClient known(server->port());
    RawClient stranger(server->port());
    EXPECT_EQ(resultOf(known.ask(authenticate)), "0000");
    EXPECT_EQ(resultOf(stranger.ask(getTimeZone)), "0004");
    EXPECT_EQ(resultOf(known.ask(getTimeZone)), "0000");
}

TEST_F(TcpServerTest, AnswersARefusedRequestAndStaysInStep) {
    RawClient client(server->port());
    EXPECT_EQ(resultOf(client.ask(requestFrame(9999, {"x"}))), "0002");
    EXPECT_EQ(resultOf(client.ask(wide("000000260003x"))), "0003"); // no terminator
    EXPECT_EQ(resultOf(client.ask(findUserName)), "0000");
}

TEST_F(TcpServerTest, TakesRequestsByteByByte) {
    RawClient slow(server->port());
    slow.sendByteByByte(authenticate);
    EXPECT_EQ(resultOf(slow.receive()), "0000");
}

TEST_F(TcpServerTest, TakesRequestsThatCameTogether) {
    RawClient hasty(server->port());
    auto both = authenticate;
    both.insert(both.end(), getTimeZone.begin(), getTimeZone.end());
    EXPECT_EQ(resultOf(hasty.ask(both)), "0000");
    EXPECT_EQ(bodyOf(hasty.receive()), std::string(88, '0') + "/");
}

TEST_F(TcpServerTest, ServesOthersWhateverPartOfARequestIsMissing) {
    std::vector<std::unique_ptr<RawClient>> waiting;
    for (const std::size_t count : {std::size_t{0}, std::size_t{1}, std::size_t{23}, std::size_t{24},
                                    std::size_t{25}, authenticate.size() - 1}) {
        waiting.push_back(std::make_unique<RawClient>(server->port()));
        waiting.back()->send(
            {authenticate.begin(), authenticate.begin() + static_cast<std::ptrdiff_t>(count)});
    }
    expectServed();
    waiting.back()->send({authenticate.back()});
    EXPECT_EQ(resultOf(waiting.back()->receive()), "0000");
}

TEST_F(TcpServerTest, ServesOthersWhileAClientDoesNotReadItsAnswers) {
    RawClient deaf(server->port());
    EXPECT_EQ(resultOf(deaf.ask(authenticate)), "0000");
    const auto search = requestFrame(122, {"366", "Ann"});
    while (deaf.offer(search)) { // until all buffers on the way are full
    }
    expectServed();
}

TEST_F(TcpServerTest, AnswersAClientThatHasFinishedSending) {
    RawClient client(server->port());
    client.send(findUserName);
    client.finishSending();
    EXPECT_EQ(bodyOf(client.receive()), "P/Tessera/Ann/");
    EXPECT_TRUE(client.isClosed());
}

TEST_F(TcpServerTest, RefusesFramesThatBreakTheRulesAndClosesBehindTheAnswer) {
    for (const char* text : {"GET / HTTP/1.1\r\nHost: tessera\r\n\r\n", "000000230003", "999999990003",
                             "000655380003", "-00000240003", "0000002400x3"}) {
        RawClient client(server->port());
        EXPECT_EQ(resultOf(client.ask(wide(text))), "0001") << text;
        client.finishSending();
        EXPECT_TRUE(client.isClosed()) << text;
    }
    RawClient narrow(server->port());
    EXPECT_EQ(resultOf(narrow.ask(std::vector<std::uint8_t>(100'000, 0xFF))), "0001");
    expectServed();
}

TEST_F(TcpServerTest, TakesLongFramesOnceTheUserIsKnown) {
    RawClient client(server->port());
    EXPECT_EQ(resultOf(client.ask(authenticate)), "0000");
    EXPECT_EQ(resultOf(client.ask(requestFrame(7, {std::string(1'000'000, 'x')}))),
              "0003"); // read whole, not served
    EXPECT_EQ(resultOf(client.ask(getTimeZone)), "0000");
}

TEST_F(TcpServerTest, ClosesTheConnectionInThePlaceOfALostAnswer) {
    service.orderFaults({.lostAnswers = {2}});
    RawClient client(server->port());
    EXPECT_EQ(resultOf(client.ask(findUserName)), "0000");
    client.send(findUserName);
    EXPECT_TRUE(client.isClosed());
    expectServed();
}

TEST_F(TcpServerTest, OutlivesClientsThatResetTheirConnection) {
    for (const auto& data : {std::vector<std::uint8_t>(), findUserName, wide("0000"), wide("999999990003")}) {
        RawClient client(server->port());
        client.send(data);
        client.reset();
    }
    expectServed();
}

TEST_F(TcpServerTest, ServesManyAtOnce) {
    std::vector<std::unique_ptr<RawClient>> clients;
    for (int i = 0; i < 100; ++i) clients.push_back(std::make_unique<RawClient>(server->port()));
    for (const auto& client : clients) client->send(findUserName);
    for (const auto& client : clients) EXPECT_EQ(bodyOf(client->receive()), "P/Tessera/Ann/");
}

TEST_F(TcpServerTest, LetsClientsAboveTheLimitWaitForAPlace) {
    serve(1);
    auto first = std::make_unique<RawClient>(server->port());
    EXPECT_EQ(resultOf(first->ask(findUserName)), "0000");
    RawClient second(server->port());
    second.send(findUserName);
    EXPECT_EQ(resultOf(first->ask(findUserName)), "0000");
    first.reset();
    EXPECT_EQ(resultOf(second.receive()), "0000");
}

TEST_F(TcpServerTest, ClosesItsConnectionsWhenItStops) {
    RawClient client(server->port());
    client.ask(findUserName);
    client.send(wide("0000")); // in the middle of a request
    server->stop();
    EXPECT_TRUE(client.isClosed());
    server->stop();
}

TEST_F(TcpServerTest, TellsItsAddress) {
    EXPECT_EQ(server->address(), "127.0.0.1:" + std::to_string(server->port()));
    EXPECT_NE(server->port(), 0);
}

TEST_F(TcpServerTest, NeedsAFreePort) {
    EXPECT_THROW(TcpServer(service, "127.0.0.1", server->port()), TesseraError);
}

} // namespace
} // namespace tsr
