#include "tessera/replicatedItems.h"

#include <algorithm>
#include <string_view>
#include <unordered_set>

#include "tessera/RequestRefused.h"

namespace tsr {

namespace {

constexpr std::uint32_t firstSequence = 1;

} // namespace

const ItemName newItemName{std::string(16, '0'), std::string(32, '0')};

UserDatabase databaseOf(const Application& application, const RequestContext& context) {
    return context.store.database(context.user().id, application.databaseKind);
}

std::optional<Document> findItem(const Application& application, const RequestContext& context,
                                 const UserDatabase& database, const ItemName& name) {
    if (name.dbid != database.dbid) return std::nullopt;
    auto document = context.store.findDocument(database.id, name.unid);
    if (document && document->kind != application.documentKind) return std::nullopt;
    return document;
}

[[noreturn]] void raiseNoDocument(const std::string& unid) {
    throw RequestRefused(ResultCode::NotFound, "There is no document " + quotedStart(unid) + ".");
}

void confirmKnown(const Application& application, const RequestContext& context, const UserDatabase& database,
                  const std::vector<KnownItem>& known) {
    const auto unconfirmed = context.store.unconfirmed(database.id, application.documentKind);
    if (unconfirmed.empty()) return;
    std::unordered_set<std::string_view> unids;
    for (const KnownItem& item : known) unids.insert(item.name.unid);
    SqliteTransaction transaction = context.store.transaction();
    for (const std::string& unid : unconfirmed) {
        const bool isNew = context.session.newDocuments.contains({database.id, unid});
        if (!isNew && unids.contains(unid)) context.store.confirm(database.id, unid);
    }
    transaction.commit();
}

Properties sentProperties(const RequestContext& context, std::size_t first) {
    Properties properties;
    for (std::size_t i = first; i < context.strings.size(); ++i) {
        const std::string& text = context.strings[i];
        const std::size_t end = text.find('=');
        if (end == std::string::npos || end == 0) {
            throw RequestRefused(ResultCode::BadRequest, context.quoted(i) + " is not a property.");
        }
        if (text.front() != '#') properties[text.substr(0, end)].push_back(text.substr(end + 1));
    }
    return properties;
}

std::optional<DocumentVersion> takenBefore(const Application& application, const RequestContext& context,
                                           const UserDatabase& database, const Properties& properties) {
    for (const std::string& unid :
         context.store.unconfirmed(database.id, application.documentKind, properties)) {
        if (context.session.newDocuments.emplace(database.id, unid).second)
            return DocumentVersion{unid, firstSequence};
    }
    return std::nullopt;
}

DocumentVersion newDocument(const Application& application, const RequestContext& context,
                            const UserDatabase& database, const Properties& properties,
                            const Properties& besides) {
    if (const auto before = takenBefore(application, context, database, properties)) return *before;
    const Document added =
        context.store.addUnconfirmed(database.id, application.documentKind, properties, besides);
    context.session.newDocuments.emplace(database.id, added.unid);
    return {added.unid, added.sequence};
}

void deleteItems(const Application& application, const RequestContext& context, const UserDatabase& database,
                 const std::vector<ItemName>& names) {
    SqliteTransaction transaction = context.store.transaction();
    for (const ItemName& name : names) {
        if (findItem(application, context, database, name))
            context.store.deleteDocument(database.id, name.unid);
    }
    transaction.commit();
}

void raiseIfChanged(const Exchange& exchange, const Document& document) {
    const auto guarded = exchange.guarded.find(document.unid);
    if (guarded == exchange.guarded.end() || guarded->second == document.sequence) return;
    throw RequestRefused(ResultCode::ItemRefused, "The document was changed in Notes meanwhile.");
}

bool receiveToo(Exchange& exchange, const std::string& unid) {
    auto& unids = exchange.toReceive;
    if (std::find(unids.begin(), unids.end(), unid) != unids.end()) return false;
    unids.push_back(unid);
    return true;
}

void noteChange(Exchange& exchange, const Document& changed) {
    if (const auto guarded = exchange.guarded.find(changed.unid); guarded != exchange.guarded.end())
        guarded->second = changed.sequence; // it may replace it once more
}

} // namespace tsr
