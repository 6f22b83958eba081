#pragma once

#include <string>
#include <vector>

#include "foundation/CountedPtr.h"
#include "foundation/TimeZone.h"
#include "server/ClientRequest.h"
#include "server/ClientResponse.h"
#include "server/IStreamSocket.h"
#include "server/ServerAccount.h"

namespace tsr {

// The one connection of a session to the Tessera Server: a request goes out, and its response is read before
// the next. A refused request raises a ServerRequestError and leaves the connection in step; after any other
// error it is of no more use.
class ServerConnection {
public:
    ServerConnection() = default;
    explicit ServerConnection(CountedPtr<IStreamSocket> socket) : socket_(std::move(socket)) {}

    // Opens the connection; no greeting is exchanged. Raises NotUnsigned for a bad port, HostNotResolved,
    // SocketError.
    void connect(const ServerAccount& account);

    // The Notes name of a user who hasn't given it; empty where the server doesn't know it for certain.
    std::string findUserName();

    void authenticate(const ServerAccount& account);

    // Asks for the user's time zone, and keeps it. Raises InvalidTimeZoneLength, TimeZoneHasYears.
    const TimeZone& getTimeZone();
    const TimeZone& timeZone() const { return timeZone_; } // UTC until it was asked for

    // What the server has noted about the session, a text for each error.
    std::vector<std::string> getSessionErrors();

    // Takes leave. The socket stays open until this object goes.
    void close();

    // The Dbid text of the user's mail database; empty where there is none.
    std::string findMailDatabase();

    // Sends `request` and returns its response, at the start of the body. Raises ServerRequestError for a
    // result code other than 0.
    CountedPtr<ClientResponse> exchange(const ClientRequest& request);

private:
    // `reportedCode` is the request code that the error of a refused request carries.
    CountedPtr<ClientResponse> exchangeAs(std::uint32_t reportedCode, const ClientRequest& request);
    CountedPtr<ClientResponse> exchangeEmpty(std::uint32_t code);

    CountedPtr<IStreamSocket> socket_;                            // null until connect succeeds
    CountedPtr<WireBytes> bodyMemory_ = makeCounted<WireBytes>(); // of one response after another
    TimeZone timeZone_;
};

} // namespace tsr
