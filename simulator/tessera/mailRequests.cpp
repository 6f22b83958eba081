#include "tessera/mailRequests.h"

#include <algorithm>

#include "tessera/RequestRefused.h"
#include "tessera/handheldMail.h"
#include "tessera/mailAccess.h"
#include "tessera/mailDocument.h"
#include "tessera/mailReplicationInfo.h"
#include "tessera/outgoingMail.h"
#include "tessera/replicatedItems.h"
#include "tessera/takenMail.h"

namespace tsr {

namespace {

namespace names = mailProperties;

constexpr std::uint32_t mostCharacters = 60'000; // a record of the handheld has less than 64 KiB

// One pair: the title of the database and its identity. What a client sends from its Outbox comes next.
std::vector<std::string> findMailDatabase(const RequestContext& context) {
    context.expectStrings(0);
    const UserDatabase database = databaseOf(mailApplication, context);
    context.session.outbox = database.id;
    return {database.title, database.dbid};
}

const Exchange& exchangeOf(const RequestContext& context) {
    context.expectStrings(1);
    const Exchange* const exchange = context.session.exchanges.find(mailApplication, context.strings[0]);
    if (exchange == nullptr)
        throw RequestRefused(ResultCode::NotFound, "There is no replication " + context.quoted(0) + ".");
    return *exchange;
}

// The token. Answered with documents of the one database.
template <std::vector<ItemName> Exchange::*list>
std::vector<std::string> listItems(const RequestContext& context) {
    std::vector<std::string> unids;
    for (const ItemName& name : exchangeOf(context).*list) unids.push_back(name.unid);
    return unids;
}

std::vector<std::string> listToReceive(const RequestContext& context) {
    return exchangeOf(context).toReceive;
}

void noteCut(const RequestContext& context, const UserDatabase& database, const Document& document,
             const std::string& givenBody) {
    const bool isCut = givenBody != firstValue(document.properties, names::body);
    if (isCut != document.properties.contains(names::cut))
        context.store.annotateDocument(database.id, document.unid, names::cut, isCut ? "1" : "");
}

// The mail database, the document, and the most characters of a body. Answered with properties; the three
// that make up the message's version come last, where they prevail over others of their names.
std::vector<std::string> giveMail(const RequestContext& context) {
    context.expectStrings(3);
    const UserDatabase database = namedDatabase(context);
    const Document document = requiredMail(context, database, context.strings[1]);
    const Properties given = givenMail(document.properties, std::min(context.number(2), mostCharacters));
    noteCut(context, database, document, firstValue(given, names::body));
    std::vector<std::string> strings;
    for (const auto& [name, values] : given) {
        for (const std::string& value : values) strings.push_back(name + "=" + value);
    }
    strings.push_back("DBID=" + database.dbid);
    strings.push_back("UNID=" + document.unid);
    strings.push_back("SeqNum=" + std::to_string(document.sequence));
    return strings;
}

// The mail database, then documents. All of them are gone behind it, so that all are answered.
std::vector<std::string> takeDeletions(const RequestContext& context) {
    context.expectAtLeast(1);
    endOutbox(context);
    const UserDatabase database = namedDatabase(context);
    std::vector<ItemName> items;
    for (std::size_t i = 1; i < context.strings.size(); ++i)
        items.push_back({database.dbid, context.strings[i]});
    deleteItems(mailApplication, context, database, items);
    return {context.strings.begin() + 1, context.strings.end()};
}

} // namespace

const std::vector<Route>& mailRoutes() {
    static const std::vector<Route> routes{
        {324, false, findMailDatabase},
        {mailCommands.sendReplicationInfo, false, takeMailReplicationInfo},
        {mailCommands.fetchWanted, false, listItems<&Exchange::wanted>},
        {mailCommands.fetchDeleted, false, listItems<&Exchange::deleted>},
        {mailCommands.listToReceive, false, listToReceive},
        {mailCommands.receiveItem, false, giveMail},
        {mailCommands.sendItem, false, takeMail},
        {mailCommands.sendDeletions, false, takeDeletions},
        {mailCommands.sendOutgoingMail, false, sendMail},
    };
    return routes;
}

} // namespace tsr
