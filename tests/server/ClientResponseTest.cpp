#include "server/ClientResponse.h"

#include <new>
#include <string>

#include "support/ScriptedSocket.h"
#include "support/bytes.h"
#include "support/errors.h"
#include "support/wire.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

using test::ScriptedSocket;
using test::textRaisedBy;
using test::wide;
using Bytes = ScriptedSocket::Bytes;

const char invalidHeader[] = "Tessera Services response has invalid header.";
const char noNumber[] = "Cannot convert wide string to unsigned.";
const char closedEarly[] = "The network connection was closed gracefully.";
const char noTerminator[] = "Null terminator not found in string.";

// The text of a header: length, code, result, message length.
Bytes header(const std::string& fields) {
    EXPECT_EQ(fields.size(), 20u);
    return wide(fields);
}

ClientResponse received(const Bytes& frame) {
    ScriptedSocket socket;
    socket.willReceive(frame);
    ClientResponse response(7);
    response.receive(socket);
    EXPECT_TRUE(socket.isDrained());
    return response;
}

Bytes operator+(Bytes left, const Bytes& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

TEST(ClientResponse, MayBeAHeaderAlone) {
    ClientResponse response = received(header("00000040000700000000"));
    EXPECT_EQ(response.resultCode(), 0u);
    EXPECT_EQ(response.message(), "");
    EXPECT_EQ(response.requestCode(), 7u);
    EXPECT_TRUE(response.atEnd());
    EXPECT_EQ(textRaisedBy([&] { response.readString(); }), noTerminator);
    EXPECT_EQ(response.readCharacters(), "");
}

TEST(ClientResponse, DoesNotReadTheFourCharactersBehindItsLength) {
    for (const char* fields : {"00000040    00000000", "00000040abcd00000000", "00000040999900000000"})
        EXPECT_EQ(received(header(fields)).resultCode(), 0u);
}

TEST(ClientResponse, ReadsItsStrings) {
    ClientResponse response = received(test::responseOf({"one", "", "\xE9"}));
    EXPECT_FALSE(response.atEnd());
    EXPECT_EQ(response.readString(), "one");
    EXPECT_EQ(response.readString(), "");
    EXPECT_FALSE(response.atEnd());
    EXPECT_EQ(response.readString(), "\xE9");
    EXPECT_TRUE(response.atEnd());
}

TEST(ClientResponse, CarriesTheMessageOfAFailure) {
    ClientResponse response =
        received(header("00000052    00420003") + wide("No!") + test::wireStrings({"ab"}));
    EXPECT_EQ(response.resultCode(), 42u);
    EXPECT_EQ(response.message(), "No!");
    EXPECT_EQ(response.readString(), "ab");
}

TEST(ClientResponse, AFailureNeedsNoMessage) {
    const ClientResponse response = received(header("00000040    00010000"));
    EXPECT_EQ(response.resultCode(), 1u);
    EXPECT_EQ(response.message(), "");
}

TEST(ClientResponse, TakesFieldsAsAStreamDoes) {
    EXPECT_EQ(received(header("40          12ab   0")).resultCode(), 12u);
    EXPECT_EQ(received(header("  +40xxx     1x 0000")).resultCode(), 1u);
}

TEST(ClientResponse, RefusesABrokenHeader) {
    const struct {
        const char* fields;
        const char* text;
    } rows[] = {
        {"00000039    00000000", invalidHeader}, // shorter than itself
        {"00000000    xxxxxxxx", invalidHeader}, // before anything else is looked at
        {"xxxxxxxx    00000000", noNumber},      {"            00000000", noNumber},
        {"00000040        0000", noNumber},      {"00000040    0000    ", noNumber},
        {"00000042    00000001", invalidHeader}, // a message without a failure
        {"00000049    00010010", invalidHeader}, // 40 and ten characters
        {"-1          0000  -1", invalidHeader}, // a message of 4 Gi characters, without a failure
    };
    for (const auto& row : rows)
        EXPECT_EQ(textRaisedBy([&] { received(header(row.fields) + Bytes(64)); }), row.text) << row.fields;
}

TEST(ClientResponse, ABodyThatWrapsFailsForWantOfMemory) {
    // Ten characters pass the check of the header as ten bytes, but need twenty.
    EXPECT_THROW(received(header("00000050    00010010") + wide("0123456789")), std::bad_alloc);
}

TEST(ClientResponse, RefusesLengthsThatLieWithoutReading) {
    for (const char* fields : {"-1          00000000",    // a body of 4 GiB
                               "-1          0001  -1"}) { // a message of 8 GiB, which the check lets pass
        ScriptedSocket socket;
        socket.willReceive(header(fields));
        ClientResponse response(7);
        EXPECT_THROW(response.receive(socket), std::bad_alloc);
        EXPECT_EQ(socket.longestRead, 40u);
    }
}

TEST(ClientResponse, ReadsALongBodyInPieces) {
    ScriptedSocket socket;
    socket.willReceive(header("99999999    00000000") + Bytes(100));
    ClientResponse response(7);
    EXPECT_EQ(textRaisedBy([&] { response.receive(socket); }), closedEarly);
    EXPECT_LE(socket.longestRead, 1u << 20);
}

TEST(ClientResponse, KeepsEveryPieceOfALongBody) {
    std::string text(1500000, 'x'); // 3,000,000 bytes, three pieces
    text.front() = 'a';
    text[524287] = 'b'; // the last of the first piece
    text[524288] = 'c';
    text.back() = 'z';
    ClientResponse response = received(test::responseOf({text}));
    EXPECT_EQ(response.readString(), text);
    EXPECT_TRUE(response.atEnd());
}

TEST(ClientResponse, ComesOneByteAtATime) {
    ScriptedSocket socket;
    socket.pieceBytes = 1;
    socket.willReceive(test::responseFrame(3, "Not now", test::wireStrings({"one", "two"})));
    ClientResponse response(7);
    response.receive(socket);
    EXPECT_EQ(response.message(), "Not now");
    EXPECT_EQ(response.readString(), "one");
    EXPECT_EQ(response.readString(), "two");
}

TEST(ClientResponse, FailsCutShortAtEachLength) {
    const Bytes frame = test::responseFrame(3, "No", test::wireStrings({"a", "bc"}));
    for (std::size_t length = 0; length < frame.size(); ++length) {
        ScriptedSocket socket;
        socket.willReceive(Bytes(frame.begin(), frame.begin() + static_cast<std::ptrdiff_t>(length)));
        ClientResponse response(7);
        EXPECT_EQ(textRaisedBy([&] { response.receive(socket); }), closedEarly) << length;
        EXPECT_EQ(textRaisedBy([&] { response.resultCode(); }).substr(0, 30),
                  "Internal error occured at line");
    }
}

TEST(ClientResponse, HasNoResultBeforeItIsReceived) {
    const ClientResponse response(7);
    for (const std::string& text :
         {textRaisedBy([&] { response.resultCode(); }), textRaisedBy([&] { response.message(); })}) {
        EXPECT_TRUE(text.starts_with("Internal error occured at line ")) << text;
        EXPECT_TRUE(text.ends_with(" in ClientResponse.")) << text;
    }
}

TEST(ClientResponse, ASecondFrameTakesThePlaceOfTheFirst) {
    ScriptedSocket socket;
    socket.willReceive(test::responseFrame(3, "No", test::wireStrings({"first"})));
    socket.willReceive(test::responseOf({"second"}));
    ClientResponse response(7);
    response.receive(socket);
    EXPECT_EQ(response.readString(), "first");
    response.receive(socket);
    EXPECT_EQ(response.resultCode(), 0u);
    EXPECT_EQ(response.readString(), "second");
}

TEST(ClientResponse, AnUnfinishedStringFailsBehindTheGoodOnes) {
    ClientResponse response = received(test::responseFrame(0, "", test::wireStrings({"one"}) + wide("two")));
    EXPECT_EQ(response.readString(), "one");
    EXPECT_EQ(textRaisedBy([&] { response.readString(); }), noTerminator);
    EXPECT_EQ(response.readCharacters(), "two"); // the position has stayed
}

TEST(ClientResponse, IgnoresALastOddByteInAString) {
    ClientResponse response = received(test::responseFrame(0, "", test::bytes("61 00 00 00 62")));
    EXPECT_EQ(response.readString(), "a");
    EXPECT_FALSE(response.atEnd());
    EXPECT_EQ(textRaisedBy([&] { response.readString(); }), noTerminator);
}

TEST(ClientResponse, FindsATerminatorAtEvenDistanceOnly) {
    ClientResponse response = received(test::responseFrame(0, "", test::bytes("61 00 00 01 00 00")));
    EXPECT_EQ(response.readString(), "a" + std::string(49, '?'));
}

TEST(ClientResponse, MarksUnitsWithoutANarrowForm) {
    ClientResponse response = received(test::responseFrame(0, "", test::bytes("AC 20 3D D8 00 00")));
    EXPECT_EQ(response.readString(), std::string(98, '?'));
}

TEST(ClientResponse, ReadsCharactersByCount) {
    ClientResponse response = received(test::responseFrame(0, "", wide(std::string("ab\0cd", 5))));
    EXPECT_EQ(response.readCharacters(3), std::string("ab\0", 3)); // a zero is a character
    EXPECT_EQ(textRaisedBy([&] { response.readCharacters(3); }),
              "Buffer underun occured when reading 3 character string.");
    EXPECT_EQ(textRaisedBy([&] { response.readCharacters(0xFFFFFFFE); }),
              "Buffer underun occured when reading 4294967294 character string.");
    EXPECT_EQ(response.readCharacters(0), "");
    EXPECT_EQ(response.readCharacters(2), "cd");
    EXPECT_TRUE(response.atEnd());
}

TEST(ClientResponse, ReadsAllCharactersThatRemain) {
    ClientResponse response = received(test::responseFrame(0, "", wide(std::string("a\0b", 3))));
    EXPECT_EQ(response.readString(), "a");
    EXPECT_EQ(response.readCharacters(), "b");
    EXPECT_TRUE(response.atEnd());
}

TEST(ClientResponse, CannotReadHalfACharacter) {
    ClientResponse response = received(test::responseFrame(0, "", test::bytes("61 00 62")));
    EXPECT_EQ(textRaisedBy([&] { response.readCharacters(); }),
              "Unable to read wide string - buffer length is odd.");
    EXPECT_EQ(textRaisedBy([&] { response.readCharacters(2); }),
              "Buffer underun occured when reading 2 character string.");
    EXPECT_EQ(response.readCharacters(1), "a");
}

} // namespace
} // namespace tsr
