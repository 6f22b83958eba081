#include "tessera/mailAccess.h"

#include <utility>

#include "tessera/RequestRefused.h"
#include "tessera/handheldMail.h"
#include "tessera/mailDocument.h"
#include "tessera/numbers.h"
#include "tessera/replicatedItems.h"

namespace tsr {

const Application mailApplication{
    .databaseKind = mailDatabaseKind, .documentKind = mailKind, .commands = mailCommands, .adopt = adoptMail};

UserDatabase namedDatabase(const RequestContext& context) {
    const UserDatabase database = databaseOf(mailApplication, context);
    if (context.strings[0] != database.dbid)
        throw RequestRefused(ResultCode::NotFound, "There is no mail database " + context.quoted(0) + ".");
    return database;
}

std::string namedFolder(const RequestContext& context, std::size_t index) {
    const std::string& folder = context.strings[index];
    if (folder != inboxFolder && folder != draftsFolder)
        throw RequestRefused(ResultCode::NotFound, "There is no folder " + context.quoted(index) + ".");
    return folder;
}

std::string folderOf(const Document& document) {
    return firstValue(document.properties, mailProperties::folder);
}

Document requiredMail(const RequestContext& context, const UserDatabase& database, const std::string& unid) {
    auto document = findItem(mailApplication, context, database, {database.dbid, unid});
    if (!document || folderOf(*document) == sentFolder) raiseNoDocument(unid);
    return *document;
}

void confirmSentMail(const RequestContext& context) {
    auto& sent = context.session.sentMail;
    if (sent) context.store.confirm(sent->first, sent->second);
    sent.reset();
}

void endOutbox(const RequestContext& context) {
    confirmSentMail(context);
    const auto outbox = std::exchange(context.session.outbox, std::nullopt);
    if (!outbox) return;
    for (const std::string& unid : context.store.unconfirmed(*outbox, mailKind)) {
        const auto document = context.store.findDocument(*outbox, unid);
        if (document && folderOf(*document) == sentFolder) context.store.confirm(*outbox, unid);
    }
}

std::string dateText(std::int64_t moment) { return std::to_string(moment - firstNotesSecond); }

} // namespace tsr
