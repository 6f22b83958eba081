#pragma once

#include <cstdint>

namespace tsr {

// How a request ended, as it stands in the header of the response. docs/tessera.md lists them for users.
enum class ResultCode : std::uint16_t {
    Success = 0,
    BadFrame = 1,       // the frame breaks the rules, and the connection ends behind this answer
    UnknownRequest = 2, // no handler for this command code
    BadRequest = 3,     // the body doesn't hold what the command asks for
    NotAuthenticated = 4,
    AuthenticationFailed = 5,
    NotFound = 6,     // a user, database or document that isn't there
    TooLarge = 7,     // the answer would pass the limits of a frame
    ServerFailed = 8, // a failure of the server's own
    ItemRefused = 9   // an item that Notes doesn't take
};

} // namespace tsr
