#pragma once

#include <string>

namespace tsr {

// What the device's configuration tells about the server and the user, in the form that goes out.
struct ServerAccount {
    std::string serverAddress;      // host name or dotted address
    std::string serverPort;         // decimal
    std::string userName;           // the Notes name; may be empty
    std::string password;           // crosses the wire as it stands, and is written nowhere
    std::string deviceTimeText;     // the device's clock, decimal seconds since 1993
    std::string conflictRule = "C"; // "C": the device wins a conflict, "S": the server does
};

} // namespace tsr
