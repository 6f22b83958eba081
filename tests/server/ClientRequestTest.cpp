#include "server/ClientRequest.h"

#include <string>

#include "support/ScriptedSocket.h"
#include "support/bytes.h"
#include "support/wire.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

using test::ScriptedSocket;
using test::wide;

std::vector<ScriptedSocket::Bytes> sent(const ClientRequest& request) {
    ScriptedSocket socket;
    request.send(socket);
    return socket.writes;
}

TEST(ClientRequest, AnEmptyBodyIsAWriteOfNoBytes) {
    ClientRequest request;
    request.setCode(19);
    const auto writes = sent(request);
    ASSERT_EQ(writes.size(), 2u);
    EXPECT_EQ(test::hexText(writes[0]),
              "30 00 30 00 30 00 30 00 30 00 30 00 32 00 34 00 30 00 30 00 31 00 39 00"); // 000000240019
    EXPECT_TRUE(writes[1].empty());
}

TEST(ClientRequest, HasItsStringsWithTerminators) {
    ClientRequest request;
    request.setCode(3);
    request.addString("ab");
    EXPECT_EQ(request.code(), 3u);
    const auto writes = sent(request);
    ASSERT_EQ(writes.size(), 2u);
    EXPECT_EQ(writes[0], wide("000000300003"));
    EXPECT_EQ(test::hexText(writes[1]), "61 00 62 00 00 00");
}

TEST(ClientRequest, AnEmptyStringIsItsTerminator) {
    ClientRequest request;
    request.addString("");
    request.addString("\xE9");
    request.addString("");
    EXPECT_EQ(test::hexText(sent(request)[1]), "00 00 E9 00 00 00 00 00");
}

TEST(ClientRequest, AStringEndsAtItsFirstNul) {
    ClientRequest request;
    request.addString(std::string("a\0b", 3));
    EXPECT_EQ(test::hexText(sent(request)[1]), "61 00 00 00");
}

TEST(ClientRequest, StringsFollowWhatIsThereOneByOne) {
    ClientRequest request;
    request.addString("a");
    request.addStrings(std::vector<std::string>{"b", "", std::string("c\0d", 3)});
    request.addStrings(std::vector<std::string>());
    request.addString("e");
    EXPECT_EQ(test::hexText(sent(request)[1]), "61 00 00 00 62 00 00 00 00 00 63 00 00 00 65 00 00 00");
}

TEST(ClientRequest, ARunOfStringsIsOnTheWireAsStringsOneByOne) {
    StringRun run;
    run.add("b");
    run.add("");
    run.add(std::string("c\0d", 3));
    run.add("\xE9");
    ClientRequest request;
    request.addString("a");
    request.addStrings(run);
    request.addStrings(StringRun());
    request.addString("e");
    EXPECT_EQ(test::hexText(sent(request)[1]),
              "61 00 00 00 62 00 00 00 00 00 63 00 00 00 E9 00 00 00 65 00 00 00");
}

TEST(ClientRequest, GoesOutTheSameTwice) {
    ClientRequest request;
    request.setCode(350);
    request.addString("token");
    EXPECT_EQ(sent(request), sent(request));
}

TEST(ClientRequest, AWideNumberPushesTheCodeOut) {
    ClientRequest request;
    request.setCode(12345);
    EXPECT_EQ(sent(request)[0], wide("000000241234"));
    // 49,999,988 units and their terminator make 99,999,978 bytes of body and nine digits of length.
    request.addString(std::string(49999988, 'x'));
    EXPECT_EQ(sent(request)[0], wide("100000002123"));
}

} // namespace
} // namespace tsr
