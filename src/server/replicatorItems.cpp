// How one item crosses the wire.

#include <utility>

#include "foundation/GeneralError.h"
#include "foundation/StringPair.h"
#include "foundation/numbers.h"
#include "server/ClientRequest.h"
#include "server/ReplicatorImpl.h"
#include "server/commands.h"

namespace tsr {

namespace {

constexpr char unidName[] = "UNID";
constexpr char dbidName[] = "DBID";
constexpr char sequenceName[] = "SeqNum";
constexpr char classNameName[] = "#ClassName";
constexpr char differencesName[] = "#Differences";

constexpr char oneItem[] = "1";           // how many items are wanted
constexpr char noDifferences[] = "0";     // the whole item
constexpr std::size_t addressEmpties = 4; // strings that the protocol has a place for, and no client a value
constexpr std::size_t dateBookEmpties = 2;
constexpr std::size_t toDoEmpties = 2;

CountedPtr<ClientResponse> exchangeStrings(ServerConnection& connection, std::uint32_t code,
                                           const std::vector<std::string>& strings) {
    ClientRequest request;
    request.setCode(code);
    request.addStrings(strings);
    return connection.exchange(request);
}

void appendProperties(std::vector<std::string>& strings, const NotesItem& item) {
    for (const auto& [name, values] : item) {
        for (const std::string& value : values) strings.push_back(name + '=' + value);
    }
}

CountedPtr<ClientResponse> sendStrings(ServerConnection& connection, std::uint32_t code,
                                       std::vector<std::string> strings, const NotesItem& item) {
    appendProperties(strings, item);
    return exchangeStrings(connection, code, strings);
}

// Each string is read before one is parsed, so that a reply that is cut short is told as such.
ItemVersion readVersion(ClientResponse& response) {
    const std::string dbidText = response.readString();
    const std::string unidText = response.readString();
    const std::string sequenceText = response.readString();
    return ItemVersion(dbidText, unidText, sequenceText);
}

std::vector<std::string> namedStrings(const std::string& token, const ItemId& id, std::size_t empties) {
    std::vector<std::string> strings = {token, id.dbidText(), id.unidText()};
    strings.resize(strings.size() + empties);
    return strings;
}

} // namespace

ItemVersion ReplicatorImpl::parseItem(ClientResponse& response, NotesItem& item, const std::string& className,
                                      const std::optional<std::string>& fixedDbid) {
    item.clear();
    std::string unidText;
    std::string dbidText;
    std::string sequenceText;
    while (!response.atEnd()) {
        StringPair property = splitPair(response.readString());
        if (property.name == unidName) unidText = property.value;
        if (property.name == dbidName) dbidText = property.value;
        if (property.name == sequenceName) sequenceText = property.value;
        item[std::move(property.name)].push_back(std::move(property.value));
    }
    addValue(item, classNameName, className);
    if (sequenceText.empty()) throw GeneralError(Message::NoSequenceNumber);
    return ItemVersion(fixedDbid.value_or(dbidText), unidText, sequenceText);
}

ItemVersion ReplicatorImpl::receiveItem(ServerConnection& connection, const std::string& token,
                                        const std::string& className, const std::string& handle,
                                        std::uint32_t code, NotesItem& item) {
    const auto response = exchangeStrings(connection, code, {token, handle, oneItem});
    const ItemVersion version = parseItem(*response, item, className);
    if (!response->atEnd()) throw GeneralError(Message::ExcessResponseData);
    return version;
}

ItemVersion ReplicatorImpl::receiveMailItem(ServerConnection& connection, const std::string& className,
                                            const std::string& dbidText, const std::string& handle,
                                            std::uint32_t code, std::uint32_t sizeLimit, NotesItem& item) {
    const auto response = exchangeStrings(connection, code, {dbidText, handle, toDecimal(sizeLimit)});
    return parseItem(*response, item, className, dbidText);
}

ItemVersion ReplicatorImpl::sendAnomalyItem(ServerConnection& connection, const std::string& token,
                                            std::uint32_t code, const ItemId& id, const NotesItem& item,
                                            bool replyHasPriorUnid, std::string& newUnid) {
    const auto response =
        sendStrings(connection, code, {token, id.dbidText(), id.unidText(), noDifferences}, item);
    const std::string dbidText = response->readString();
    const std::string unidText = response->readString();
    newUnid = replyHasPriorUnid ? response->readString() : unidText;
    return ItemVersion(dbidText, unidText, response->readString());
}

ItemVersion ReplicatorImpl::sendAddressItem(ServerConnection& connection, const std::string& token,
                                            const ItemId& id, const NotesItem& item) {
    return readVersion(
        *sendStrings(connection, addressCommands.sendItem, namedStrings(token, id, addressEmpties), item));
}

ItemVersion ReplicatorImpl::sendMemoItem(ServerConnection& connection, const std::string& token,
                                         const ItemId& id, const NotesItem& item) {
    return readVersion(*sendStrings(connection, memoCommands.sendItem, namedStrings(token, id, 0), item));
}

ItemVersion ReplicatorImpl::sendToDoItem(ServerConnection& connection, const std::string& token,
                                         const ItemId& id, const NotesItem& item) {
    return readVersion(
        *sendStrings(connection, toDoCommands.sendItem, namedStrings(token, id, toDoEmpties), item));
}

ItemVersion ReplicatorImpl::sendDateBookItem(ServerConnection& connection, const std::string& token,
                                             const ItemId& id, const std::string& windowStart,
                                             const std::string& windowEnd, const NotesItem& item) {
    const std::string differences = firstValue(item, differencesName);
    std::vector<std::string> strings = namedStrings(token, id, dateBookEmpties);
    strings.insert(strings.end(),
                   {windowStart, windowEnd, differences.empty() ? noDifferences : differences});
    return readVersion(*sendStrings(connection, dateBookCommands.sendItem, std::move(strings), item));
}

ItemVersion ReplicatorImpl::sendMailItem(ServerConnection& connection, const std::string& mailDbidText,
                                         const std::string& className, const ItemId& id,
                                         const NotesItem& item) {
    const Dbid dbid = id.dbid() == Dbid() ? Dbid(mailDbidText) : id.dbid();
    const auto response = sendStrings(connection, mailCommands.sendItem,
                                      {dbid.text(), id.unidText(), className, noDifferences}, item);
    const std::string unidText = response->readString();
    const std::string sequenceText = response->readString();
    return ItemVersion(dbid.text(), unidText, sequenceText);
}

void ReplicatorImpl::sendOutgoingMail(ServerConnection& connection, const std::string& mailDbidText,
                                      const std::string& options, const std::string& unidText,
                                      const NotesItem& item) {
    sendStrings(connection, mailCommands.sendOutgoingMail, {mailDbidText, options, unidText, noDifferences},
                item);
}

} // namespace tsr
