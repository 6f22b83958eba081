#include "server/ServerConnection.h"

#include "foundation/GeneralError.h"
#include "foundation/ServerRequestError.h"
#include "foundation/numbers.h"
#include "foundation/zoneInformation.h"
#include "server/IpSocketAddress.h"
#include "server/TcpSocket.h"
#include "server/commands.h"

namespace tsr {

namespace {

constexpr char protocolVersion[] = "2.4.2.0";

// The first string of the answer to a search for the user's name, when it is of use.
constexpr char personFound[] = "P";

std::vector<std::string> readRun(ClientResponse& response) {
    std::vector<std::string> run;
    while (!response.atEnd()) run.push_back(response.readString());
    return run;
}

} // namespace

void ServerConnection::connect(const ServerAccount& account) {
    const CountedPtr<TcpSocket> socket(new TcpSocket);
    const auto port = static_cast<std::uint16_t>(parseUnsigned(account.serverPort));
    socket->connect(IpSocketAddress(account.serverAddress, port));
    socket_ = socket;
}

std::string ServerConnection::findUserName() {
    const CountedPtr<ClientResponse> response = exchangeEmpty(findUserNameCommand);
    const std::string kind = response->readString();
    response->readString();
    const std::vector<std::string> names = readRun(*response);
    return kind == personFound && names.size() == 1 ? names.front() : std::string();
}

void ServerConnection::authenticate(const ServerAccount& account) {
    ClientRequest request;
    request.setCode(authenticateCommand);
    request.addString(account.deviceTimeText);
    request.addString(account.userName);
    request.addString(account.password);
    request.addString(protocolVersion);
    request.addString(".");
    request.addString("0");
    request.addString("");
    request.addString("");
    request.addString("Palm");
    request.addString("160x160");
    exchange(request)->readCharacters();
}

const TimeZone& ServerConnection::getTimeZone() {
    timeZone_ = parseTimeZoneBlock(exchangeEmpty(getTimeZoneCommand)->readString());
    return timeZone_;
}

std::vector<std::string> ServerConnection::getSessionErrors() {
    const CountedPtr<ClientResponse> response = exchangeEmpty(getSessionErrorsCommand);
    response->readString();
    return readRun(*response);
}

void ServerConnection::close() { exchangeEmpty(closeCommand); }

std::string ServerConnection::findMailDatabase() {
    ClientRequest request;
    request.setCode(findMailDatabaseCommand);
    // Deliberate: an error carries the code of another request.
    const CountedPtr<ClientResponse> response = exchangeAs(getTimeZoneCommand, request);
    std::string database;
    while (!response->atEnd()) {
        response->readString();
        const std::string second = response->readString();
        if (database.empty()) database = second;
    }
    return database;
}

CountedPtr<ClientResponse> ServerConnection::exchange(const ClientRequest& request) {
    return exchangeAs(request.code(), request);
}

CountedPtr<ClientResponse> ServerConnection::exchangeAs(std::uint32_t reportedCode,
                                                        const ClientRequest& request) {
    if (!socket_)
        throw GeneralError(Message::InternalError) << Tag("n") << __LINE__ << Tag("f") << "ServerConnection";
    request.send(*socket_);
    CountedPtr<ClientResponse> response(new ClientResponse(request.code(), bodyMemory_));
    response->receive(*socket_);
    if (response->resultCode() != 0)
        throw ServerRequestError(reportedCode, response->resultCode(), response->message());
    return response;
}

CountedPtr<ClientResponse> ServerConnection::exchangeEmpty(std::uint32_t code) {
    ClientRequest request;
    request.setCode(code);
    return exchange(request);
}

} // namespace tsr
