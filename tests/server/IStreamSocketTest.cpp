#include "server/IStreamSocket.h"

#include "support/ScriptedSocket.h"
#include "support/errors.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

using Bytes = test::ScriptedSocket::Bytes;

TEST(IStreamSocket, ReadsExactlyWhatIsAskedFor) {
    for (const std::size_t piece : {1u, 2u, 3u, 5u, 100u}) {
        test::ScriptedSocket socket;
        socket.pieceBytes = piece;
        socket.willReceive({1, 2, 3, 4, 5, 6});
        Bytes buffer(5);
        socket.readExact(buffer.data(), 5);
        EXPECT_EQ(buffer, (Bytes{1, 2, 3, 4, 5}));
        EXPECT_FALSE(socket.isDrained());
    }
}

TEST(IStreamSocket, ReadsNothingForNoBytes) {
    test::ScriptedSocket socket;
    socket.readExact(nullptr, 0);
    EXPECT_EQ(socket.longestRead, 0u);
}

TEST(IStreamSocket, AnEarlyEndIsAnError) {
    test::ScriptedSocket socket;
    socket.willReceive({1, 2});
    Bytes buffer(3);
    EXPECT_EQ(test::textRaisedBy([&] { socket.readExact(buffer.data(), 3); }),
              "The network connection was closed gracefully.");
}

} // namespace
} // namespace tsr
