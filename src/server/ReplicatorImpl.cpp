#include "server/ReplicatorImpl.h"

#include <new>

#include "foundation/numbers.h"

namespace tsr {

namespace {

constexpr std::uint32_t mostItems = 0xFFFFFF; // record ids have 24 bits

CountedPtr<ClientResponse> exchangeStrings(ServerConnection& connection, std::uint32_t code,
                                           const std::vector<std::string>& strings) {
    ClientRequest request;
    request.setCode(code);
    request.addStrings(strings);
    return connection.exchange(request);
}

void readItemIds(ClientResponse& response, std::vector<ItemId>& ids) {
    while (!response.atEnd()) {
        const std::string dbidText = response.readString();
        const std::string unidText = response.readString();
        ids.emplace_back(dbidText, unidText);
    }
}

void readUnids(ClientResponse& response, const std::string& dbidText, std::vector<ItemId>& ids) {
    while (!response.atEnd()) ids.emplace_back(dbidText, response.readString());
}

std::string fetchToken(ServerConnection& connection, std::uint32_t code,
                       const std::vector<std::string>& strings, const StringRun& entries) {
    ClientRequest request;
    request.setCode(code);
    request.addStrings(strings);
    request.addStrings(entries);
    return connection.exchange(request)->readString();
}

} // namespace

std::uint32_t ReplicatorImpl::countItems(ServerConnection& connection, const std::string& token,
                                         std::uint32_t code) {
    const std::uint32_t count = parseUnsigned(exchangeStrings(connection, code, {token})->readString());
    if (count > mostItems) throw std::bad_alloc();
    return count;
}

void ReplicatorImpl::fetchItemIds(ServerConnection& connection, const std::string& token,
                                  std::uint32_t countCode, std::uint32_t fetchCode,
                                  std::vector<ItemId>& ids) {
    const std::uint32_t count = countItems(connection, token, countCode);
    const auto response = exchangeStrings(connection, fetchCode, {token, "0", toDecimal(count)});
    parseUnsigned(response->readString());
    readItemIds(*response, ids);
}

void ReplicatorImpl::listItemIndices(ServerConnection& connection, const std::string& token,
                                     std::uint32_t code, std::vector<std::string>& indices) {
    indices.clear();
    const std::uint32_t count = countItems(connection, token, code);
    for (std::uint32_t index = 0; index < count; ++index) indices.push_back(toDecimal(index));
}

void ReplicatorImpl::fetchUnidRun(ServerConnection& connection, std::uint32_t code, const std::string& token,
                                  const std::string& dbidText, std::vector<ItemId>& ids) {
    readUnids(*exchangeStrings(connection, code, {token}), dbidText, ids);
}

void ReplicatorImpl::listUnidRun(ServerConnection& connection, const std::string& token,
                                 const std::string& dbidText, std::uint32_t code,
                                 std::vector<std::string>& handles) {
    handles.clear();
    std::vector<ItemId> ids;
    fetchUnidRun(connection, code, token, dbidText, ids);
    for (const ItemId& id : ids) handles.push_back(id.unidText());
}

void ReplicatorImpl::sendDeletions(ServerConnection& connection, std::uint32_t code, bool expectCount,
                                   const std::vector<ItemId>& ids, std::vector<ItemId>& deleted) {
    std::vector<std::string> strings;
    for (const ItemId& id : ids) {
        strings.push_back(id.dbidText());
        strings.push_back(id.unidText());
    }
    const auto response = exchangeStrings(connection, code, strings);
    if (expectCount) response->readString();
    readItemIds(*response, deleted);
}

void ReplicatorImpl::sendMailDeletions(ServerConnection& connection, std::uint32_t code,
                                       const std::string& dbidText, const std::vector<ItemId>& ids,
                                       std::vector<ItemId>& deleted) {
    std::vector<std::string> strings = {dbidText};
    for (const ItemId& id : ids) strings.push_back(id.unidText());
    readUnids(*exchangeStrings(connection, code, strings), dbidText, deleted);
}

std::string ReplicatorImpl::sendReplicationInfo(ServerConnection& connection, const ServerAccount& account,
                                                std::uint32_t code, const std::string& first,
                                                const std::string& second, const StringRun& entries) {
    return fetchToken(connection, code, {account.deviceTimeText, account.conflictRule, first, second},
                      entries);
}

std::string ReplicatorImpl::sendReplicationInfo(ServerConnection& connection, const ServerAccount& account,
                                                std::uint32_t code, const StringRun& entries) {
    return fetchToken(connection, code, {account.deviceTimeText, account.conflictRule}, entries);
}

} // namespace tsr
