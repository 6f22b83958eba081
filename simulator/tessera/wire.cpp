#include "tessera/wire.h"

#include "tessera/RequestRefused.h"
#include "tessera/TesseraError.h"
#include "tessera/unicode.h"

namespace tsr {

namespace {

char16_t unitAt(std::span<const std::uint8_t> bytes, std::size_t offset) {
    return static_cast<char16_t>(bytes[offset] | bytes[offset + 1] << 8);
}

std::uint32_t parseField(std::span<const std::uint8_t> field) {
    std::uint32_t value = 0;
    for (std::size_t offset = 0; offset < field.size(); offset += 2) {
        const char16_t unit = unitAt(field, offset);
        if (unit < u'0' || unit > u'9') {
            throw RequestRefused(ResultCode::BadFrame, "The header of the request is not decimal text.");
        }
        value = value * 10 + (unit - u'0');
    }
    return value;
}

void appendUnit(std::vector<std::uint8_t>& frame, char16_t unit) {
    frame.push_back(static_cast<std::uint8_t>(unit & 0xFF));
    frame.push_back(static_cast<std::uint8_t>(unit >> 8));
}

void appendUnits(std::vector<std::uint8_t>& frame, const std::u16string& units) {
    for (const char16_t unit : units) appendUnit(frame, unit);
}

void appendNumber(std::vector<std::uint8_t>& frame, std::size_t value, std::size_t digits) {
    std::u16string text(digits, u'0');
    for (std::size_t i = digits; i > 0; --i, value /= 10)
        text[i - 1] = static_cast<char16_t>(u'0' + value % 10);
    appendUnits(frame, text);
}

std::u16string messageUnits(const Response& response) {
    std::u16string units = toUtf16(response.message);
    if (units.size() > maxMessageUnits) units.resize(maxMessageUnits);
    return units;
}

std::vector<std::uint8_t> bodyBytes(const std::vector<std::string>& strings) {
    std::vector<std::uint8_t> body;
    for (const std::string& text : strings) {
        appendUnits(body, toUtf16(text));
        appendUnit(body, 0);
    }
    return body;
}

} // namespace

RequestHeader parseRequestHeader(std::span<const std::uint8_t, requestHeaderBytes> bytes,
                                 std::size_t maxBytes) {
    const std::uint32_t length = parseField(bytes.subspan<0, 16>());
    const std::uint32_t code = parseField(bytes.subspan<16, 8>());
    if (length < requestHeaderBytes) {
        throw RequestRefused(ResultCode::BadFrame, "The request is shorter than its own header.");
    }
    if (length > maxBytes) {
        throw RequestRefused(ResultCode::BadFrame, "The request is longer than this server accepts.");
    }
    return {code, length - requestHeaderBytes};
}

std::vector<std::string> parseBody(std::span<const std::uint8_t> bytes) {
    if (bytes.size() % 2 != 0) {
        throw RequestRefused(ResultCode::BadRequest, "The body of the request ends within a character.");
    }
    std::vector<std::string> strings;
    std::u16string units;
    bool ended = true;
    for (std::size_t offset = 0; offset < bytes.size(); offset += 2) {
        const char16_t unit = unitAt(bytes, offset);
        ended = unit == 0;
        if (!ended) {
            units += unit;
            continue;
        }
        try {
            strings.push_back(toUtf8(units));
        } catch (const TesseraError&) {
            throw RequestRefused(ResultCode::BadRequest, "A string of the request is not text.");
        }
        units.clear();
    }
    if (!ended) {
        throw RequestRefused(ResultCode::BadRequest, "The last string of the request has no terminator.");
    }
    return strings;
}

std::vector<std::uint8_t> toFrame(const Response& response) {
    const std::u16string message = messageUnits(response);
    const std::vector<std::uint8_t> body = bodyBytes(response.strings);
    const std::size_t length = responseHeaderBytes + 2 * message.size() + body.size();
    if (length > maxFrameBytes) {
        return toFrame({response.code, ResultCode::TooLarge, "The answer does not fit into a frame.", {}});
    }
    std::vector<std::uint8_t> frame;
    frame.reserve(length);
    appendNumber(frame, length, 8);
    appendNumber(frame, response.code, 4);
    appendNumber(frame, static_cast<std::size_t>(response.result), 4);
    appendNumber(frame, message.size(), 4);
    appendUnits(frame, message);
    frame.insert(frame.end(), body.begin(), body.end());
    return frame;
}

} // namespace tsr
