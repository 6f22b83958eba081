#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "foundation/CountedPtr.h"
#include "server/IStreamSocket.h"
#include "server/LentBytes.h"
#include "server/ResponseHeader.h"
#include "server/wireText.h"

namespace tsr {

// The answer to one request: a header (see ResponseHeader), and a body of strings that is read from its start
// to its end.
class ClientResponse {
public:
    static constexpr std::uint32_t allRemaining = 0xFFFFFFFF;

    // `lender`, if there is one, gives the memory of the body.
    explicit ClientResponse(std::uint32_t requestCode, CountedPtr<WireBytes> lender = nullptr)
        : requestCode_(requestCode), body_(std::move(lender)) {}

    // Reads the whole frame, in place of an earlier one. Raises what ResponseHeader raises, ConnectionClosed,
    // SocketError, std::bad_alloc for a body of more than 99,999,999 bytes.
    void receive(IStreamSocket& socket);

    std::uint32_t requestCode() const { return requestCode_; }

    // Both raise InternalError before a frame has been received.
    std::uint32_t resultCode() const;
    std::string message() const;

    bool atEnd() const { return position_ >= body_.bytes.size(); }

    // The next string with a terminator; a last odd byte is ignored. Raises MissingNul.
    std::string readString();

    // The next `count` characters, or all that remain, zeros among them. Raises StringUnderrun where there
    // are fewer, OddWideLength where half a character remains.
    std::string readCharacters(std::uint32_t count = allRemaining);

private:
    std::size_t bytesLeft() const { return body_.bytes.size() - position_; }

    std::unique_ptr<ResponseHeader> header_;
    std::uint32_t requestCode_;
    LentBytes body_;
    std::uint32_t position_ = 0; // bytes
};

} // namespace tsr
