#include "tessera/mailReplicationInfo.h"

#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "tessera/MailSelection.h"
#include "tessera/RequestRefused.h"
#include "tessera/mailAccess.h"
#include "tessera/mailDocument.h"
#include "tessera/replicatedItems.h"

namespace tsr {

namespace {

namespace names = mailProperties;

constexpr std::size_t firstSelection = 2; // string of the request
constexpr std::size_t stringsPerEntry = 4;

// A message as the handheld lists it.
struct MailEntry {
    KnownItem item;
    bool unread;
    bool markChanged; // and nothing else
};

bool isUnread(const Document& document) { return firstValue(document.properties, names::unread) == "1"; }

// "0" is the conflict rule of the client, "1" that of the server.
ConflictRule conflictRule(const RequestContext& context, std::size_t index) {
    const std::string& options = context.strings[index];
    if (options.size() != 11 || (options[2] != '0' && options[2] != '1'))
        throw RequestRefused(ResultCode::BadRequest, context.quoted(index) + " are not options of mail.");
    return options[2] == '0' ? ConflictRule::KeepHandheld : ConflictRule::KeepCopy;
}

// Behind a reset, which sends 0 for the number, a state of "0" says nothing.
MailEntry mailEntry(const RequestContext& context, const std::string& dbid, std::size_t index) {
    const std::uint32_t sequence = context.number(index + 1);
    const std::uint32_t state = context.number(index + 2);
    const std::uint32_t unread = context.number(index + 3);
    const bool modified = state == sequence + 1;
    if ((!modified && state != sequence && state != 0) || unread > 1) {
        throw RequestRefused(ResultCode::BadRequest,
                             "The entry of the document " + context.quoted(index) + " cannot be understood.");
    }
    return {{{dbid, context.strings[index]}, sequence, modified},
            unread == 1,
            !modified && state == 0 && sequence != 0};
}

std::vector<MailEntry> mailEntries(const RequestContext& context, const std::string& dbid,
                                   std::size_t first) {
    if ((context.strings.size() - first) % stringsPerEntry != 0)
        throw RequestRefused(ResultCode::BadRequest, "The last message of the list is incomplete.");
    std::vector<MailEntry> entries;
    entries.reserve((context.strings.size() - first) / stringsPerEntry);
    for (std::size_t i = first; i < context.strings.size(); i += stringsPerEntry)
        entries.push_back(mailEntry(context, dbid, i));
    return entries;
}

// Of one folder, with the properties that the selection looks at.
std::vector<Document> headersIn(const RequestContext& context, const UserDatabase& database,
                                const std::string& folder, const MailSelection& selection) {
    std::set<std::string> fields = selection.fields();
    fields.insert({names::folder, names::unread});
    std::vector<Document> documents = context.store.documents(database.id, mailKind, fields);
    std::erase_if(documents, [&folder](const Document& document) { return folderOf(document) != folder; });
    return documents;
}

// The selection is of what arrives: what the handheld has stays with it, and drafts are few and the user's
// own.
std::vector<DocumentVersion> versionsFor(const std::vector<MailEntry>& entries,
                                         const std::vector<Document>& documents, bool isInbox,
                                         MailSelection& selection) {
    std::unordered_set<std::string> known;
    for (const MailEntry& entry : entries) known.insert(entry.item.name.unid);
    std::vector<DocumentVersion> versions;
    versions.reserve(documents.size());
    for (const Document& document : documents) {
        const bool takesPart =
            !isInbox || known.contains(document.unid) || selection.selects(document.properties);
        versions.push_back({document.unid, document.sequence, takesPart});
    }
    return versions;
}

// Gives the items to compare.
std::vector<KnownItem> settleMarks(const RequestContext& context, const UserDatabase& database,
                                   const std::vector<MailEntry>& entries,
                                   const std::vector<Document>& documents, ConflictRule rule) {
    std::unordered_map<std::string_view, const Document*> byUnid;
    byUnid.reserve(documents.size());
    for (const Document& document : documents) byUnid.emplace(document.unid, &document);
    std::vector<KnownItem> known;
    known.reserve(entries.size());
    SqliteTransaction transaction = context.store.transaction();
    for (const MailEntry& entry : entries) {
        known.push_back(entry.item);
        const auto found = byUnid.find(entry.item.name.unid);
        if (found == byUnid.end() || isUnread(*found->second) == entry.unread) continue;
        const bool agreed = isCurrent(entry.item.sequence, found->second->sequence);
        const bool prevails = rule == ConflictRule::KeepHandheld || agreed;
        if (entry.markChanged || (entry.item.modified && prevails)) {
            context.store.annotateDocument(database.id, entry.item.name.unid, names::unread,
                                           entry.unread ? "1" : "");
        } else if (!entry.item.modified) {
            known.back().sequence = 0; // as for any change
        }
    }
    transaction.commit();
    return known;
}

} // namespace

std::vector<std::string> takeMailReplicationInfo(const RequestContext& context) {
    context.expectAtLeast(firstSelection + 3);
    endOutbox(context);
    const UserDatabase database = namedDatabase(context);
    const std::string folder = namedFolder(context, 1);
    const ConflictRule rule = conflictRule(context, firstSelection + 1);
    MailSelection selection(context, firstSelection);
    const auto entries = mailEntries(context, database.dbid, firstSelection + selection.strings());
    const std::vector<Document> documents = headersIn(context, database, folder, selection);
    const std::vector<KnownItem> known = settleMarks(context, database, entries, documents, rule);
    confirmKnown(mailApplication, context, database, known);
    const auto versions = versionsFor(entries, documents, folder == inboxFolder, selection);
    return {context.session.exchanges.add(mailApplication, compare(known, database.dbid, versions, rule))};
}

} // namespace tsr
