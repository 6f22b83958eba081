#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "server/IStreamSocket.h"
#include "server/StringRun.h"
#include "server/wireText.h"

namespace tsr {

// A request to the server as it is built, and then sent once. On the wire, all in 16-bit units:
//
//   offset  size  units  field
//   0       16    8      bytes of the whole frame, these 24 included: decimal, padded with zeros
//   16      8     4      command code, likewise
//   24                   body: strings, each ending in a zero unit
class ClientRequest {
public:
    void setCode(std::uint32_t code) { code_ = code; }
    std::uint32_t code() const { return code_; }

    // Appends one string to the body. The text ends at its first NUL, which would end it for the server too.
    void addString(const std::string& text);
    void addStrings(const std::vector<std::string>& texts);
    void addStrings(const StringRun& texts);

    // Two writes, the header and the body, the second one also for a body of no bytes.
    void send(IStreamSocket& socket) const;

private:
    WireBytes header() const;

    std::uint32_t code_ = 0;
    WireBytes body_;
};

} // namespace tsr
