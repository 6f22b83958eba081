#include "server/TcpSocket.h"

#include <csignal>
#include <cstring>
#include <functional>
#include <pthread.h>
#include <string>
#include <sys/resource.h>
#include <thread>
#include <vector>

#include "foundation/SocketError.h"
#include "platform/socketLibrary.h"
#include "server/IpSocketAddress.h"
#include "server/LoopbackPeer.h"
#include "server/ServerConnection.h"
#include "support/errors.h"
#include "support/wire.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

using Bytes = std::vector<std::uint8_t>;
using test::LoopbackPeer;
using test::textRaisedBy;

platform::Ipv4SocketAddress nativeOf(const IpSocketAddress& address) {
    platform::Ipv4SocketAddress native;
    std::memcpy(&native, address.impl().nativeAddress(), sizeof native);
    return native;
}

std::string hexOf(const platform::Ipv4SocketAddress& address) {
    std::uint8_t bytes[sizeof address];
    std::memcpy(bytes, &address, sizeof bytes);
    std::string text;
    for (const std::uint8_t byte : bytes) {
        text += "0123456789ABCDEF"[byte >> 4];
        text += "0123456789ABCDEF"[byte & 15];
    }
    return text;
}

std::string functionThatFails(const std::function<void()>& action) {
    try {
        action();
    } catch (const SocketError& error) {
        EXPECT_NE(error.code(), 0u);
        return error.functionName();
    }
    return "none";
}

ServerAccount accountAt(const std::string& address, const std::string& port) {
    ServerAccount account;
    account.serverAddress = address;
    account.serverPort = port;
    return account;
}

TEST(IpSocketAddress, IsInNetworkOrder) {
    // The family in the order of this machine, then the port 1352 (0x0548) and the address.
    EXPECT_EQ(hexOf(nativeOf(IpSocketAddress("192.168.1.2", 1352))).substr(4), "0548"
                                                                               "C0A80102"
                                                                               "0000000000000000");
    EXPECT_EQ(nativeOf(IpSocketAddress("192.168.1.2", 1352)).family, 2);
}

TEST(IpSocketAddress, IsAnyAddressForAnEmptyHost) {
    EXPECT_EQ(nativeOf(IpSocketAddress("", 80)).address, 0u);
}

TEST(IpSocketAddress, LooksNamesUp) {
    EXPECT_EQ(hexOf(nativeOf(IpSocketAddress("localhost", 1))).substr(8, 8), "7F000001");
}

TEST(IpSocketAddress, RefusesANameThatNobodyHas) {
    // Blanks can't be in a name, and so no server is asked.
    EXPECT_EQ(textRaisedBy([] { IpSocketAddress("no such host", 1); }),
              "Unable to resolve the hostname 'no such host' to an ip address.");
}

TEST(IpSocketAddress, LooksTheBroadcastAddressUpAsAName) {
    // It reads as the failure of inet_addr; the look-up then gives the address it was written as.
    EXPECT_EQ(nativeOf(IpSocketAddress("255.255.255.255", 1)).address, 0xFFFFFFFFu);
}

TEST(TcpSocket, CarriesBytesBothWays) {
    LoopbackPeer peer;
    std::thread other([&] {
        peer.accept();
        peer.send(peer.receive(5));
        peer.hangUp();
    });
    TcpSocket socket;
    socket.connect(IpSocketAddress("127.0.0.1", peer.port()));
    const Bytes sent = {1, 2, 3, 4, 5};
    EXPECT_EQ(socket.write(sent.data(), 5), 5u);
    EXPECT_EQ(socket.write(sent.data(), 0), 0u);
    Bytes received(5);
    socket.readExact(received.data(), 5);
    EXPECT_EQ(received, sent);
    socket.readExact(received.data(), 0);           // nothing is wanted, nothing is read
    EXPECT_EQ(socket.read(received.data(), 5), 0u); // closed
    EXPECT_EQ(textRaisedBy([&] { socket.readExact(received.data(), 1); }),
              "The network connection was closed gracefully.");
    other.join();
}

TEST(TcpSocket, SendsMoreThanTheSystemTakesAtOnce) {
    LoopbackPeer peer;
    Bytes received;
    std::thread other([&] {
        peer.accept();
        received = peer.receive(20000000);
    });
    TcpSocket socket;
    socket.connect(IpSocketAddress("127.0.0.1", peer.port()));
    Bytes sent(20000000);
    for (std::size_t i = 0; i < sent.size(); ++i) sent[i] = static_cast<std::uint8_t>(i % 251);
    EXPECT_EQ(socket.write(sent.data(), 20000000), 20000000u);
    other.join();
    EXPECT_TRUE(received == sent);
}

TEST(TcpSocket, ASendToAClosedConnectionIsAnError) {
    LoopbackPeer peer;
    TcpSocket socket;
    socket.connect(IpSocketAddress("127.0.0.1", peer.port()));
    peer.accept();
    peer.hangUp();
    peer.stopListening();
    const Bytes data(1000);
    // The first send is answered with a reset; one of the next meets it. A signal would end the test.
    const std::string failed = functionThatFails([&] {
        for (int i = 0; i < 100000; ++i) socket.write(data.data(), 1000);
    });
    EXPECT_EQ(failed, "send");
}

TEST(TcpSocket, FailuresNameTheCall) {
    std::uint16_t port = 0;
    {
        const LoopbackPeer peer;
        port = peer.port();
    }
    TcpSocket socket;
    EXPECT_EQ(functionThatFails([&] { socket.connect(IpSocketAddress("127.0.0.1", port)); }), "connect");
    TcpSocket unconnected;
    std::uint8_t byte = 0;
    EXPECT_EQ(functionThatFails([&] { unconnected.read(&byte, 1); }), "recv");
    EXPECT_EQ(functionThatFails([&] { unconnected.write(&byte, 1); }), "send");
    EXPECT_EQ(functionThatFails([&] { unconnected.bind(IpSocketAddress("192.0.2.1", 0)); }), "bind");
    unconnected.bind(IpSocketAddress("127.0.0.1", 0));
}

TEST(TcpSocket, NeedsASocketOfTheSystem) {
    // A sanitizer's first look at a class takes a descriptor: let it look before there are none.
    std::uint8_t byte = 0;
    EXPECT_EQ(functionThatFails([&] { TcpSocket().read(&byte, 1); }), "recv");
    rlimit old{};
    getrlimit(RLIMIT_NOFILE, &old);
    const rlimit none{0, old.rlim_max}; // no descriptor more can be opened
    setrlimit(RLIMIT_NOFILE, &none);
    const std::string failed = functionThatFails([] { TcpSocket socket; });
    setrlimit(RLIMIT_NOFILE, &old);
    EXPECT_EQ(failed, "socket");
}

TEST(TcpSocket, TheErrorHasTheSystemsText) {
    TcpSocket socket;
    std::uint8_t byte = 0;
    EXPECT_EQ(textRaisedBy([&] { socket.read(&byte, 1); }),
              "recv( ) failed: Transport endpoint is not connected");
}

TEST(TcpSocket, RefusesAnAddressOfAnotherClass) {
    struct OtherAddress : ISocketAddress {
    } address;
    TcpSocket socket;
    const char wrongType[] = "The network address type passed is of the wrong type.";
    EXPECT_EQ(textRaisedBy([&] { socket.connect(address); }), wrongType);
    EXPECT_EQ(textRaisedBy([&] { socket.bind(address); }), wrongType);
}

TEST(TcpSocket, ClosesWithItsObject) {
    LoopbackPeer peer;
    {
        TcpSocket socket;
        socket.connect(IpSocketAddress("127.0.0.1", peer.port()));
        peer.accept();
    }
    EXPECT_TRUE(peer.receive(1).empty());
}

TEST(TcpSocket, TakesAnInterruptedReadUpAgain) {
    struct sigaction action {};
    struct sigaction old {};
    action.sa_handler = [](int) {}; // without SA_RESTART, so that the call itself comes back
    sigaction(SIGUSR1, &action, &old);

    LoopbackPeer peer;
    const pthread_t reader = pthread_self();
    std::thread other([&] {
        peer.accept();
        for (int i = 0; i < 1000; ++i) {
            pthread_kill(reader, SIGUSR1);
            std::this_thread::yield();
        }
        peer.send({42});
    });
    TcpSocket socket;
    socket.connect(IpSocketAddress("127.0.0.1", peer.port()));
    std::uint8_t byte = 0;
    EXPECT_EQ(socket.read(&byte, 1), 1u);
    EXPECT_EQ(byte, 42);
    other.join();
    sigaction(SIGUSR1, &old, nullptr);
}

TEST(ServerConnection, ConnectsAndExchanges) {
    LoopbackPeer peer;
    const Bytes request = test::requestOf(19, {});
    Bytes received;
    std::thread other([&] {
        peer.accept();
        received = peer.receive(request.size());
        peer.send(test::responseOf({}));
    });
    ServerConnection connection;
    connection.connect(accountAt("127.0.0.1", std::to_string(peer.port())));
    connection.close();
    other.join();
    EXPECT_EQ(received, request);
}

TEST(ServerConnection, CannotConnectToRubbish) {
    ServerConnection connection;
    const auto connectTo = [&](const std::string& address, const std::string& port) {
        return textRaisedBy([&] { connection.connect(accountAt(address, port)); });
    };
    EXPECT_EQ(connectTo("127.0.0.1", "13 52"), "Cannot convert string '13 52' to unsigned.");
    EXPECT_EQ(connectTo("127.0.0.1", ""), "Cannot convert string '' to unsigned.");
    EXPECT_EQ(connectTo("no such host", ""), "Cannot convert string '' to unsigned."); // the port first
    EXPECT_EQ(connectTo("no such host", "1352"),
              "Unable to resolve the hostname 'no such host' to an ip address.");
    EXPECT_TRUE(textRaisedBy([&] { connection.close(); }).ends_with(" in ServerConnection."));
}

TEST(ServerConnection, AServerThatHangsUpFailsTheRequest) {
    LoopbackPeer peer;
    ServerConnection connection;
    connection.connect(accountAt("127.0.0.1", std::to_string(peer.port())));
    peer.accept();
    std::thread other([&] {
        peer.receive(24);
        peer.send(test::wide("00000040"));
        peer.hangUp();
    });
    EXPECT_EQ(textRaisedBy([&] { connection.close(); }), "The network connection was closed gracefully.");
    other.join();
}

} // namespace
} // namespace tsr
