#pragma once

#include <cstdint>
#include <string>

#include "server/IStreamSocket.h"

namespace tsr {

// The start of a response. On the wire, all in 16-bit units and decimal:
//
//   offset  size  units  field
//   0       16    8      bytes of the whole frame
//   16      8     4      not read
//   24      8     4      result code, 0 for success
//   32      8     4      length of the message in units; a successful response has none
//   40                   message, without a terminator
//
// Fields are read as a stream reads a number: blanks before it and rubbish behind it are ignored.
class ResponseHeader {
public:
    // Reads it from `socket`. Raises WideNotUnsigned for a field without a number, InvalidHeader,
    // std::bad_alloc for a message of more than 99,999,999 bytes.
    explicit ResponseHeader(IStreamSocket& socket);

    std::uint32_t totalLength() const { return totalLength_; }
    std::uint32_t resultCode() const { return resultCode_; }
    std::uint32_t messageLength() const { return messageLength_; } // units
    const std::string& message() const { return message_; }

    std::uint32_t bodyOffset() const; // bytes from the start of the frame

private:
    void readMessage(IStreamSocket& socket);

    std::uint32_t totalLength_;
    std::uint32_t resultCode_;
    std::uint32_t messageLength_;
    std::string message_;
};

} // namespace tsr
