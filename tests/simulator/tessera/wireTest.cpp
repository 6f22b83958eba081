#include "tessera/wire.h"

#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "support/bytes.h"
#include "tessera/RequestRefused.h"

namespace tsr {
namespace {

using test::bytes;
using test::hexText;

// Twelve characters as they stand in a request's header.
RequestHeader parse(const std::string& text, std::size_t maxBytes = maxFrameBytes) {
    std::array<std::uint8_t, requestHeaderBytes> header{};
    for (std::size_t i = 0; i < text.size(); ++i) header[2 * i] = static_cast<std::uint8_t>(text[i]);
    return parseRequestHeader(header, maxBytes);
}

ResultCode headerRefusal(const std::string& text) {
    try {
        parse(text);
        return ResultCode::Success;
    } catch (const RequestRefused& refusal) {
        return refusal.result();
    }
}

ResultCode bodyRefusal(const std::string& pairs) {
    try {
        parseBody(bytes(pairs));
        return ResultCode::Success;
    } catch (const RequestRefused& refusal) {
        return refusal.result();
    }
}

TEST(RequestHeader, IsReadFromItsBytes) {
    // "00000030" "0003": a body of six bytes
    const auto frame = bytes("30 00 30 00 30 00 30 00 30 00 30 00 33 00 30 00 30 00 30 00 30 00 33 00");
    const RequestHeader header =
        parseRequestHeader(std::span(frame).first<requestHeaderBytes>(), maxFrameBytes);
    EXPECT_EQ(header.code, 3u);
    EXPECT_EQ(header.bodyBytes, 6u);
}

TEST(RequestHeader, GivesTheSizeOfTheBody) {
    EXPECT_EQ(parse("000000240019").bodyBytes, 0u);
    EXPECT_EQ(parse("000000259999").code, 9999u);
    EXPECT_EQ(parse("000000259999").bodyBytes, 1u);        // half a character: the body's own fault
    EXPECT_EQ(parse("999999990001").bodyBytes, 99999975u); // the largest that eight digits can say
}

TEST(RequestHeader, IsRefused) {
    const std::pair<const char*, const char*> rows[] = {
        {"000000230019", "shorter than the header"},
        {"000000000019", "no length at all"},
        {" 00000240019", "blanks are for the client's reader"},
        {"0000024 0019", "so is rubbish behind the digits"},
        {"-00000240019", "no signs"},
        {"00000024001x", "a code that is no number"},
        {"GET / HTTP/1", "another protocol"},
    };
    for (const auto& [text, reason] : rows) {
        EXPECT_EQ(headerRefusal(text), ResultCode::BadFrame) << text << ": " << reason;
    }
}

TEST(RequestHeader, IsRefusedAboveTheLimit) {
    EXPECT_EQ(parse("000655360001", maxStrangerRequestBytes).bodyBytes, 65512u);
    EXPECT_THROW(parse("000655370001", maxStrangerRequestBytes), RequestRefused);
}

TEST(RequestHeader, IsRefusedForADigitInTheHighByte) {
    auto frame = bytes("30 00 30 00 30 00 30 00 30 00 30 00 32 00 34 00 30 00 30 00 31 00 39 01");
    EXPECT_THROW(parseRequestHeader(std::span(frame).first<requestHeaderBytes>(), maxFrameBytes),
                 RequestRefused);
}

TEST(RequestBody, IsARunOfStrings) {
    EXPECT_TRUE(parseBody({}).empty());
    EXPECT_EQ(parseBody(bytes("61 00 62 00 00 00")), std::vector<std::string>{"ab"});
    EXPECT_EQ(parseBody(bytes("00 00 FC 00 00 00")), (std::vector<std::string>{"", "\xC3\xBC"}));
}

TEST(RequestBody, IsRefused) {
    EXPECT_EQ(bodyRefusal("61"), ResultCode::BadRequest);                // half a character
    EXPECT_EQ(bodyRefusal("61 00 00 00 00"), ResultCode::BadRequest);    // the same behind a string
    EXPECT_EQ(bodyRefusal("61 00"), ResultCode::BadRequest);             // no terminator
    EXPECT_EQ(bodyRefusal("61 00 00 00 62 00"), ResultCode::BadRequest); // none on the last
    EXPECT_EQ(bodyRefusal("3D D8 00 00"), ResultCode::BadRequest);       // half a surrogate pair
}

TEST(ResponseFrame, EchoesTheCodeAndHasFortyBytes) {
    EXPECT_EQ(hexText(toFrame({19, ResultCode::Success, "", {}})),
              "30 00 30 00 30 00 30 00 30 00 30 00 34 00 30 00 " // 00000040
              "30 00 30 00 31 00 39 00 "                         // 0019
              "30 00 30 00 30 00 30 00 "                         // 0000
              "30 00 30 00 30 00 30 00");                        // 0000
}

TEST(ResponseFrame, HasItsMessageBeforeTheBody) {
    EXPECT_EQ(hexText(toFrame({122, ResultCode::NotFound, "no", {}})),
              "30 00 30 00 30 00 30 00 30 00 30 00 34 00 34 00 " // 00000044
              "30 00 31 00 32 00 32 00 "                         // 0122
              "30 00 30 00 30 00 36 00 "                         // 0006
              "30 00 30 00 30 00 32 00 "                         // 0002
              "6E 00 6F 00");
}

TEST(ResponseFrame, EndsEachStringWithAZero) {
    EXPECT_EQ(hexText(toFrame({324, ResultCode::Success, "", {"a", "", "\xC3\xBC"}})).substr(40 * 3),
              "61 00 00 00 00 00 FC 00 00 00");
}

TEST(ResponseFrame, CutsALongMessage) {
    const auto frame = toFrame({7, ResultCode::ServerFailed, std::string(20000, 'x'), {}});
    EXPECT_EQ(frame.size(), responseHeaderBytes + 2 * maxMessageUnits);
    EXPECT_EQ(hexText({frame.begin() + 32, frame.begin() + 40}), "30 00 35 00 31 00 32 00"); // 0512
}

TEST(ResponseFrame, BecomesARefusalWhenEightDigitsCannotSayItsLength) {
    const auto frame =
        toFrame({7, ResultCode::Success, "", {std::string(49'999'979, 'x')}}); // 100,000,000 bytes
    EXPECT_LT(frame.size(), 1000u);
    EXPECT_EQ(hexText({frame.begin() + 24, frame.begin() + 32}), "30 00 30 00 30 00 37 00"); // 0007
}

} // namespace
} // namespace tsr
