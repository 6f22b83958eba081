#include "tessera/takenMail.h"

#include "tessera/RequestRefused.h"
#include "tessera/bodyCut.h"
#include "tessera/handheldMail.h"
#include "tessera/mailAccess.h"
#include "tessera/mailDocument.h"
#include "tessera/numbers.h"
#include "tessera/replicatedItems.h"

namespace tsr {

namespace {

namespace names = mailProperties;

DocumentVersion addDraft(const RequestContext& context, const UserDatabase& database,
                         const std::string& folder, const Properties& sent, const Properties& besides) {
    Properties properties = adoptMail({}, sent);
    properties[names::folder] = {folder};
    return newDocument(mailApplication, context, database, properties, besides);
}

// The handheld's version becomes a message of its own, and Notes keeps the other. Answered with the identity
// of the old one; behind it the handheld receives both. When both are equal there is nothing to keep.
void takeCopy(const RequestContext& context, const UserDatabase& database, Exchange& exchange,
              const Document& document, const Properties& sent) {
    if (adoptMail(document.properties, sent) == document.properties) return;
    if (!receiveToo(exchange, document.unid)) return; // sent twice
    const Properties besides{{names::date, {firstValue(document.properties, names::date)}},
                             {names::importance, {firstValue(document.properties, names::importance)}}};
    receiveToo(exchange, addDraft(context, database, folderOf(document), sent, besides).unid);
}

// A version that has only the beginning of the body, with the line that tells of the rest, is completed from
// `document`. Gives whether it may replace that: it may not where Notes has changed it meanwhile, or where
// the line is gone.
bool completeBody(const Document& document, std::uint32_t known, Properties& sent) {
    if (!firstValue(document.properties, names::noticeBody).empty()) return true; // which isn't taken over
    const std::string kept = firstValue(document.properties, names::body);
    const auto whole = completedText(firstValue(sent, names::body), kept);
    const bool lineIsOwn = whole && completedText(kept, "");
    const bool isBeginning = document.properties.contains(names::cut) || (whole && !lineIsOwn);
    if (!isBeginning) return true;
    if (whole) sent[names::body] = {*whole};
    return whole && isCurrent(known, document.sequence);
}

DocumentVersion replaceMail(const RequestContext& context, const UserDatabase& database, Exchange& exchange,
                            const Document& document, Properties sent) {
    std::uint32_t& known = exchange.modified.at(document.unid);
    const bool replaces = completeBody(document, known, sent);
    if (!replaces || exchange.copied.contains(document.unid)) {
        takeCopy(context, database, exchange, document, sent);
        return {document.unid, document.sequence};
    }
    raiseIfChanged(exchange, document);
    const Document changed =
        context.store.changeDocument(database.id, document.unid, adoptMail(document.properties, sent));
    noteChange(exchange, changed);
    known = changed.sequence;
    return {changed.unid, changed.sequence};
}

} // namespace

std::vector<std::string> takeMail(const RequestContext& context) {
    context.expectAtLeast(4);
    context.countItem();
    const UserDatabase database = namedDatabase(context);
    const std::string& unid = context.strings[1];
    const std::string folder = namedFolder(context, 2);
    const Properties sent = sentProperties(context, 4);
    DocumentVersion version;
    if (unid == newItemName.unid) {
        version = addDraft(context, database, folder, sent,
                           {{names::date, {dateText(context.now)}}, {names::importance, {"2"}}});
    } else {
        const Document document = requiredMail(context, database, unid);
        Exchange* const exchange = context.session.exchanges.findModified(mailApplication, unid);
        if (exchange == nullptr || folderOf(document) != folder)
            throw RequestRefused(ResultCode::ItemRefused, "The message wasn't asked for.");
        version = replaceMail(context, database, *exchange, document, sent);
    }
    return {version.unid, std::to_string(version.sequence)};
}

} // namespace tsr
