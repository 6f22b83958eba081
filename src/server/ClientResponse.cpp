#include "server/ClientResponse.h"

#include "foundation/GeneralError.h"
#include "server/pieces.h"

namespace tsr {

namespace {

[[noreturn]] void raiseNotReceived(int line) {
    throw GeneralError(Message::InternalError) << Tag("n") << line << Tag("f") << "ClientResponse";
}

} // namespace

void ClientResponse::receive(IStreamSocket& socket) {
    header_.reset();
    auto header = std::make_unique<ResponseHeader>(socket);
    // Wraps for a message that claims more than the frame, and is then too long to be read.
    const std::uint32_t bodyBytes = header->totalLength() - header->bodyOffset();
    readInPieces(socket, bodyBytes, body_.bytes);
    position_ = 0;
    header_ = std::move(header);
}

std::uint32_t ClientResponse::resultCode() const {
    if (!header_) raiseNotReceived(__LINE__);
    return header_->resultCode();
}

std::string ClientResponse::message() const {
    if (!header_) raiseNotReceived(__LINE__);
    return header_->message();
}

std::string ClientResponse::readString() {
    const std::size_t unitsLeft = bytesLeft() / unitBytes;
    std::string text;
    const std::size_t units = narrowUntilZero(body_.bytes.data() + position_, unitsLeft, text);
    if (units == unitsLeft) throw GeneralError(Message::MissingNul);
    position_ += static_cast<std::uint32_t>((units + 1) * unitBytes);
    return text;
}

std::string ClientResponse::readCharacters(std::uint32_t count) {
    std::size_t units = count;
    if (count == allRemaining) {
        if (bytesLeft() % unitBytes != 0) throw GeneralError(Message::OddWideLength);
        units = bytesLeft() / unitBytes;
    } else if (units > bytesLeft() / unitBytes) {
        throw GeneralError(Message::StringUnderrun) << Tag("n") << count;
    }
    std::string text = narrowText(body_.bytes.data() + position_, units);
    position_ += static_cast<std::uint32_t>(units * unitBytes);
    return text;
}

} // namespace tsr
