#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "tessera/RequestRefused.h"
#include "tessera/TesseraService.h"
#include "tessera/wire.h"

namespace tsr {

// One client's conversation with the service. Whatever is wrong with a request, there is an answer to it, and
// the refusal is kept for the request that asks for the errors of the session. Only by order there is none:
// ConnectionLost is raised.
class TesseraSession {
public:
    explicit TesseraSession(TesseraService& service) : service_(service) {} // keeps the reference

    Response handle(const Request& request);

    // The same from frame to frame: a good header with the body that it announced.
    std::vector<std::uint8_t> handleFrame(const RequestHeader& header, std::span<const std::uint8_t> body);

    // The longest frame that this client may send now.
    std::size_t maxRequestBytes() const;

private:
    Response refuse(std::uint32_t code, ResultCode result, const std::string& message);

    TesseraService& service_;
    SessionState state_;
};

} // namespace tsr
