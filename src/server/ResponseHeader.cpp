#include "server/ResponseHeader.h"

#include <array>

#include "foundation/GeneralError.h"
#include "foundation/numbers.h"
#include "server/pieces.h"
#include "server/wireText.h"

namespace tsr {

namespace {

constexpr std::uint32_t headerBytes = 40;

using HeaderBytes = std::array<std::uint8_t, headerBytes>;

std::uint32_t fieldAt(const HeaderBytes& bytes, std::size_t offset, std::size_t units) {
    std::u16string text;
    for (std::size_t i = 0; i < units; ++i) {
        const std::uint8_t* unit = bytes.data() + offset + unitBytes * i;
        text += static_cast<char16_t>(unit[0] | unit[1] << 8);
    }
    return parseWideUnsigned(text.data(), text.size());
}

} // namespace

ResponseHeader::ResponseHeader(IStreamSocket& socket) {
    HeaderBytes bytes;
    socket.readExact(bytes.data(), headerBytes);
    totalLength_ = fieldAt(bytes, 0, 8);
    if (totalLength_ < headerBytes) throw GeneralError(Message::InvalidHeader);
    resultCode_ = fieldAt(bytes, 24, 4);
    messageLength_ = fieldAt(bytes, 32, 4);
    if (messageLength_ != 0) readMessage(socket);
}

std::uint32_t ResponseHeader::bodyOffset() const {
    return headerBytes + static_cast<std::uint32_t>(unitBytes) * messageLength_;
}

void ResponseHeader::readMessage(IStreamSocket& socket) {
    if (resultCode_ == 0) throw GeneralError(Message::InvalidHeader);
    // Deliberate: adds characters, not bytes. A frame that slips through fails when its body is sized.
    if (totalLength_ < messageLength_ + headerBytes) throw GeneralError(Message::InvalidHeader);
    WireBytes bytes;
    readInPieces(socket, std::uint64_t{unitBytes} * messageLength_, bytes);
    message_ = narrowText(bytes.data(), messageLength_);
}

} // namespace tsr
