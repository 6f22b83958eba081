#include "tessera/replicationRequests.h"

#include <algorithm>

#include "tessera/RequestRefused.h"
#include "tessera/meetingPattern.h"
#include "tessera/numbers.h"
#include "tessera/replicatedItems.h"

namespace tsr {

namespace {

constexpr std::size_t stringsPerKnownItem = 4;

using Handler = std::vector<std::string> (*)(const Application&, const RequestContext&);
using List = std::vector<ItemName> Exchange::*;

Exchange& exchangeOf(const Application& application, const RequestContext& context) {
    Exchange* const exchange = context.session.exchanges.find(application, context.strings[0]);
    if (exchange == nullptr) {
        throw RequestRefused(ResultCode::NotFound, "There is no replication " + context.quoted(0) + ".");
    }
    return *exchange;
}

// "C" is the client's advantage, "S" the server's.
ConflictRule conflictRule(const Application& application, const RequestContext& context) {
    const std::string& text = context.strings[1];
    if (text == "C") return ConflictRule::KeepHandheld;
    if (text != "S") {
        throw RequestRefused(ResultCode::BadRequest, context.quoted(1) + " is not a conflict rule.");
    }
    return application.commands.sendAnomaly == 0 ? ConflictRule::KeepCopy : ConflictRule::KeepBoth;
}

// Four strings: database, document, sequence number, and that number once more, or raised by one for an item
// that was modified.
KnownItem knownItem(const RequestContext& context, std::size_t index) {
    const std::uint32_t sequence = context.number(index + 2);
    const std::uint32_t raised = context.number(index + 3);
    if (raised != sequence && raised != sequence + 1) {
        throw RequestRefused(ResultCode::BadRequest, context.quoted(index + 3) + " does not follow "
                                                         + context.quoted(index + 2)
                                                         + " as a sequence number.");
    }
    return {{context.strings[index], context.strings[index + 1]}, sequence, raised != sequence};
}

// The first and the last day, each in seconds from 1993 to its midnight.
DateWindow dateWindow(const RequestContext& context) {
    return {dayOf(firstNotesSecond + context.number(2)), dayOf(firstNotesSecond + context.number(3))};
}

std::vector<DocumentVersion> versions(const Application& application, const RequestContext& context,
                                      const UserDatabase& database, const DateWindow& window) {
    if (application.takesPart == nullptr)
        return context.store.versions(database.id, application.documentKind);
    const ZoneRule zone = context.user().zone;
    std::vector<DocumentVersion> versions;
    for (const Document& document : context.store.documents(database.id, application.documentKind)) {
        versions.push_back(
            {document.unid, document.sequence, application.takesPart(document.properties, window, zone)});
    }
    return versions;
}

// The device's time, the conflict rule, the strings of the application, then the known items. Answered with
// the token under which the lists are asked for.
std::vector<std::string> takeReplicationInfo(const Application& application, const RequestContext& context) {
    const std::size_t first = 2 + application.infoStrings;
    context.expectAtLeast(first);
    context.number(0);
    const ConflictRule rule = conflictRule(application, context);
    if ((context.strings.size() - first) % stringsPerKnownItem != 0) {
        throw RequestRefused(ResultCode::BadRequest, "The last item of the replication list is incomplete.");
    }
    std::vector<KnownItem> known;
    known.reserve((context.strings.size() - first) / stringsPerKnownItem);
    for (std::size_t i = first; i < context.strings.size(); i += stringsPerKnownItem) {
        known.push_back(knownItem(context, i));
    }
    const UserDatabase database = databaseOf(application, context);
    confirmKnown(application, context, database, known);
    const DateWindow window = application.takesPart == nullptr ? DateWindow() : dateWindow(context);
    Exchange exchange = compare(known, database.dbid, versions(application, context, database, window), rule);
    exchange.window = window;
    return {context.session.exchanges.add(application, std::move(exchange))};
}

template <List list>
std::vector<std::string> countItems(const Application& application, const RequestContext& context) {
    context.expectStrings(1);
    return {std::to_string((exchangeOf(application, context).*list).size())};
}

std::vector<std::string> countToReceive(const Application& application, const RequestContext& context) {
    context.expectStrings(1);
    return {std::to_string(exchangeOf(application, context).toReceive.size())};
}

// The token, the position of the first item and the most items that are asked for. Answered with the number
// of the items that follow, then their pairs.
template <List list>
std::vector<std::string> fetchItems(const Application& application, const RequestContext& context) {
    context.expectStrings(3);
    const std::vector<ItemName>& items = exchangeOf(application, context).*list;
    const std::size_t start = std::min<std::size_t>(context.number(1), items.size());
    const std::size_t count = std::min<std::size_t>(context.number(2), items.size() - start);
    std::vector<std::string> strings{std::to_string(count)};
    for (std::size_t i = start; i < start + count; ++i) {
        strings.push_back(items[i].dbid);
        strings.push_back(items[i].unid);
    }
    return strings;
}

// The token, the position of the item, and how many are asked for, which is one. Answered with properties;
// the three that make up the item's version come last, where they prevail over others of their names.
std::vector<std::string> giveItem(const Application& application, const RequestContext& context) {
    context.expectStrings(3);
    const Exchange& exchange = exchangeOf(application, context);
    const std::uint32_t position = context.number(1);
    if (position >= exchange.toReceive.size()) {
        throw RequestRefused(ResultCode::NotFound, "There is no item " + context.quoted(1) + " to receive.");
    }
    if (context.number(2) != 1) {
        throw RequestRefused(ResultCode::BadRequest, "Items are received one by one.");
    }
    const UserDatabase database = databaseOf(application, context);
    const std::string& unid = exchange.toReceive[position];
    const auto document = findItem(application, context, database, {database.dbid, unid});
    if (!document) raiseNoDocument(unid);
    const Properties properties = application.given == nullptr
                                    ? document->properties
                                    : application.given(document->properties, exchange.window);
    std::vector<std::string> strings;
    for (const auto& [name, values] : properties) {
        for (const std::string& value : values) strings.push_back(name + "=" + value);
    }
    strings.push_back("DBID=" + database.dbid);
    strings.push_back("UNID=" + unid);
    strings.push_back("SeqNum=" + std::to_string(document->sequence));
    return strings;
}

// The loser of a conflict, which becomes a new document. It is sent in the place of its own, and so answered
// with that one's identity; behind it the handheld receives both. When both versions are equal there is
// nothing to keep.
void takeCopy(const Application& application, const RequestContext& context, const UserDatabase& database,
              Exchange& exchange, const Document& document, const Properties& sent) {
    if (application.adopt(document.properties, sent) == document.properties) return;
    if (!receiveToo(exchange, document.unid)) return; // sent twice
    receiveToo(exchange, newDocument(application, context, database, application.adopt({}, sent)).unid);
}

// Whether the properties, which begin with string `first`, are differences.
bool areDifferences(const Application& application, const RequestContext& context, std::size_t first) {
    const auto& strings = context.strings;
    const auto begin = strings.begin() + static_cast<std::ptrdiff_t>(first);
    return application.differ != nullptr
        && std::find(begin, strings.end(), "#Differences=1") != strings.end();
}

// The version that the handheld is told when it has sent differences. Where Notes has changed the document
// too, the handheld is still to receive that, and until it has it knows the version that it knew.
std::uint32_t toldSequence(Exchange& exchange, const Document& before, std::uint32_t changed) {
    const auto known = exchange.modified.find(before.unid);
    if (known == exchange.modified.end() || isCurrent(known->second, before.sequence)) return changed;
    receiveToo(exchange, before.unid);
    return known->second;
}

// Differences leave alone what they don't name, and so there is no version to lose in a conflict.
std::vector<std::string> takeDifferences(const Application& application, const RequestContext& context,
                                         const UserDatabase& database, Exchange& exchange,
                                         const ItemName& name, const Properties& sent, bool notesPrevails) {
    const auto document = findItem(application, context, database, name);
    if (!document) raiseNoDocument(name.unid);
    raiseIfChanged(exchange, *document);
    const Differences differences =
        application.differ(document->properties, sent, context.user().zone, notesPrevails);
    if (differences.killed) {
        context.store.deleteDocument(database.id, name.unid);
        return {database.dbid, name.unid, std::to_string(document->sequence)};
    }
    Document changed = *document;
    if (differences.changed != document->properties)
        changed = context.store.changeDocument(database.id, name.unid, differences.changed);
    noteChange(exchange, changed);
    // What an earlier session made of the same conflict, if that wasn't confirmed, is not made again.
    for (const Properties& properties : differences.besides)
        receiveToo(exchange, newDocument(application, context, database, properties).unid);
    const std::uint32_t sequence = toldSequence(exchange, *document, changed.sequence);
    return {database.dbid, name.unid, std::to_string(sequence)};
}

// The token, database, document, the strings of the application, and the properties. Without an identity it
// is a new item. Answered with database, document and sequence number.
std::vector<std::string> takeItem(const Application& application, const RequestContext& context) {
    const std::size_t first = 3 + application.itemStrings;
    context.expectAtLeast(first);
    context.countItem();
    const Properties sent = sentProperties(context, first);
    const ItemName name{context.strings[1], context.strings[2]};
    const UserDatabase database = databaseOf(application, context);
    const bool differs = areDifferences(application, context, first);
    if (name == newItemName) {
        if (differs) throw RequestRefused(ResultCode::ItemRefused, "A new item differs from nothing.");
        const DocumentVersion added =
            newDocument(application, context, database, application.adopt({}, sent));
        return {database.dbid, added.unid, std::to_string(added.sequence)};
    }
    Exchange& exchange = exchangeOf(application, context);
    if (differs) return takeDifferences(application, context, database, exchange, name, sent, false);
    const auto document = findItem(application, context, database, name);
    if (!document) raiseNoDocument(name.unid);
    if (exchange.copied.contains(name.unid)) {
        takeCopy(application, context, database, exchange, *document, sent);
        return {database.dbid, document->unid, std::to_string(document->sequence)};
    }
    raiseIfChanged(exchange, *document);
    const Document changed =
        context.store.changeDocument(database.id, name.unid, application.adopt(document->properties, sent));
    noteChange(exchange, changed);
    return {database.dbid, changed.unid, std::to_string(changed.sequence)};
}

std::size_t outstandingAnomaly(const Exchange& exchange, const ItemName& name) {
    const auto found = std::find(exchange.anomalies.begin(), exchange.anomalies.end(), name);
    const auto index = static_cast<std::size_t>(found - exchange.anomalies.begin());
    if (found == exchange.anomalies.end() || !exchange.anomalyOutstanding[index]) {
        throw RequestRefused(ResultCode::NotFound,
                             "No anomaly of the document " + quotedStart(name.unid) + " was asked for.");
    }
    return index;
}

// The token, database, document, "0", and the properties. The client moves its record to the new document, so
// that the one of Notes is unknown to it from now on and is to be received. Not before: a client that
// couldn't send its version would lose it to the one that it receives. When both versions are equal, as they
// are when the handheld's came in a session that broke off, there is no new document.
std::vector<std::string> takeAnomaly(const Application& application, const RequestContext& context) {
    constexpr std::size_t first = 4;
    context.expectAtLeast(first);
    context.countItem();
    const Properties sent = sentProperties(context, first);
    const ItemName name{context.strings[1], context.strings[2]};
    Exchange& exchange = exchangeOf(application, context);
    const std::size_t index = outstandingAnomaly(exchange, name);
    const UserDatabase database = databaseOf(application, context);
    if (areDifferences(application, context, first)) {
        auto strings = takeDifferences(application, context, database, exchange, name, sent, true);
        exchange.anomalyOutstanding[index] = false;
        return strings;
    }
    const auto kept = findItem(application, context, database, name);
    DocumentVersion version;
    if (kept && kept->properties == application.adopt(kept->properties, sent)) {
        version = {kept->unid, kept->sequence};
    } else {
        version = newDocument(application, context, database, application.adopt({}, sent));
        exchange.toReceive.push_back(name.unid);
    }
    exchange.anomalyOutstanding[index] = false;
    std::vector<std::string> strings{database.dbid};
    if (application.tellsReplacedUnid) strings.push_back(name.unid);
    strings.push_back(version.unid);
    strings.push_back(std::to_string(version.sequence));
    return strings;
}

// Pairs of database and document. All of them are gone behind it, so that all are answered: of what isn't
// there, nothing is left to delete.
std::vector<std::string> takeDeletions(const Application& application, const RequestContext& context) {
    if (context.strings.size() % 2 != 0) {
        throw RequestRefused(ResultCode::BadRequest, "The last deletion has no document.");
    }
    std::vector<ItemName> names;
    for (std::size_t i = 0; i < context.strings.size(); i += 2)
        names.push_back({context.strings[i], context.strings[i + 1]});
    deleteItems(application, context, databaseOf(application, context), names);
    std::vector<std::string> strings;
    if (application.countsDeletions) strings.push_back(std::to_string(context.strings.size() / 2));
    strings.insert(strings.end(), context.strings.begin(), context.strings.end());
    return strings;
}

} // namespace

std::vector<Route> replicationRoutes(const Application& application) {
    const ApplicationCommands& commands = application.commands;
    const std::pair<std::uint32_t, Handler> handlers[] = {
        {commands.sendReplicationInfo, takeReplicationInfo},
        {commands.countAnomalies, countItems<&Exchange::anomalies>},
        {commands.fetchAnomalies, fetchItems<&Exchange::anomalies>},
        {commands.countDeleted, countItems<&Exchange::deleted>},
        {commands.fetchDeleted, fetchItems<&Exchange::deleted>},
        {commands.countWanted, countItems<&Exchange::wanted>},
        {commands.fetchWanted, fetchItems<&Exchange::wanted>},
        {commands.countToReceive, countToReceive},
        {commands.receiveItem, giveItem},
        {commands.sendAnomaly, takeAnomaly},
        {commands.sendItem, takeItem},
        {commands.sendDeletions, takeDeletions},
    };
    std::vector<Route> routes;
    for (const auto& [code, handler] : handlers) {
        if (code == 0) continue;
        routes.push_back({code, false, [&application, handler = handler](const RequestContext& context) {
                              return handler(application, context);
                          }});
    }
    return routes;
}

} // namespace tsr
