#include "applications/MailReplicator.h"

#include <map>

#include "applications/singleRecord.h"
#include "foundation/PalmSyncApiError.h"
#include "foundation/Unid.h"
#include "foundation/internalError.h"
#include "foundation/numbers.h"
#include "records/mailConversion.h"
#include "server/ClientRequest.h"
#include "server/ClientResponse.h"
#include "server/commands.h"

namespace tsr {

namespace {

// Of what tells the server about a message: its identity, two numbers and its user data, each with its
// terminator.
constexpr std::size_t entryBytes = 33 + 6 + 7 + 2;

constexpr std::uint16_t mailPreferences = 1; // by their numbers
constexpr std::uint16_t signaturePreference = 3;
constexpr int isOutgoing = 1;
constexpr char inboxClass[] = "Inbox";
constexpr char draftsClass[] = "Drafts";

GeneralError unreachable(int line) { return internalError("MailReplicator", line); }

// What the request takes in the third place tells the server how the device stands to the item.
std::string stateText(const ReplicationInfo& item) {
    const std::uint32_t number = item.version.sequenceNumber();
    if (item.modified) return toDecimal(number + 1);
    return item.attributesChanged ? "0" : toDecimal(number);
}

std::string outgoingOptions(const NotesMailRecord& mail) {
    return mail.signOption + mail.deliveryReport + mail.importance + "N" + (mail.returnReceipt ? "1" : "0")
         + "00";
}

} // namespace

PalmRecordGroup MailReplicator::convertToPalm(const NotesApplicationRecord& record, bool& resendWanted) {
    resendWanted = false;
    return groupOf(toPalmMailRecord(static_cast<const NotesMailRecord&>(record))); // made by makeNotesRecord
}

CountedPtr<NotesApplicationRecord> MailReplicator::convertToNotes(const PalmRecordGroup& group, bool,
                                                                  int outgoing) {
    const auto& palm = singleRecord<PalmMailRecord>(group);
    if (palm.wantsSignature()) fetchSignature();
    return makeCounted<NotesMailRecord>(outgoing == isOutgoing ? toOutgoingMail(palm, wantedSignature(palm))
                                                               : toNotesMailRecord(palm));
}

void MailReplicator::fetchDeletedInNotes(const std::string& token, std::vector<ItemId>& out) {
    fetchUnidRun(server(), mailCommands.fetchDeleted, token, mailDatabase_, out);
}

void MailReplicator::fetchWantedItems(const std::string& token, std::vector<ItemId>& out) {
    fetchUnidRun(server(), mailCommands.fetchWanted, token, mailDatabase_, out);
}

void MailReplicator::receiveItem(const std::string& className, const std::string&, const std::string& handle,
                                 NotesItem& item, ItemVersion& version) {
    version = receiveMailItem(server(), className, mailDatabase_, handle, mailCommands.receiveItem,
                              preferences_.truncateLength, item);
}

void MailReplicator::listItemsToReceive(const std::string& token, std::vector<std::string>& handles) {
    listUnidRun(server(), token, mailDatabase_, mailCommands.listToReceive, handles);
}

ItemVersion MailReplicator::sendAnomalyItem(const std::string&, const ItemId&, const NotesApplicationRecord&,
                                            std::string&) {
    throw unreachable(__LINE__);
}

ItemVersion MailReplicator::sendItem(const std::string& className, const std::string&, const ItemId& itemId,
                                     const NotesApplicationRecord& record) {
    return sendMailItem(server(), mailDatabase_, className, itemId, itemOf(record));
}

void MailReplicator::sendDeletionList(const std::vector<ItemId>& items, std::vector<ItemId>& deleted) {
    sendMailDeletions(server(), mailCommands.sendDeletions, mailDatabase_, items, deleted);
}

std::string MailReplicator::sendReplicationInfo(const std::string& className, const StringRun& entries) {
    const std::string formula = preferences_.selectionFormula();
    ClientRequest request;
    request.setCode(mailCommands.sendReplicationInfo);
    request.addString(mailDatabase_);
    request.addString(className);
    request.addString(toDecimal(config().startLimit(timeZone())));
    request.addString(replicationOptions());
    request.addString(formula.empty() ? "0" : "1");
    if (!formula.empty()) request.addString(formula);
    request.addStrings(entries);
    return server().exchange(request)->readString();
}

std::string MailReplicator::replicationOptions() const {
    const char* const readToo = preferences_.filterType == MailPreferences::Unread ? "N" : "Y";
    const char* const rule = config().conflictRule() == "C" ? "0" : "1";
    return std::string("Y") + readToo + rule + "YYY++++N";
}

bool MailReplicator::categoryOfClass(const std::string& className, std::uint8_t& category) {
    if (className != inboxClass && className != draftsClass) throw unreachable(__LINE__);
    category = mailFolder(className);
    return true;
}

std::vector<std::string> MailReplicator::classNames() {
    if (preferences_.filterType == MailPreferences::SendOnly) return {};
    return {inboxClass, draftsClass};
}

CountedPtr<NotesApplicationRecord> MailReplicator::makeNotesRecord(const NotesItem& item) {
    return makeCounted<NotesMailRecord>(item, timeZone());
}

Replicator::Record MailReplicator::makePalmRecord(PalmRecordBuffer& buffer, bool archived) {
    return makeCounted<PalmMailRecord>(buffer, archived);
}

void MailReplicator::collectReplicationEntries(const std::string& className, StringRun& out) {
    std::uint8_t category = 0;
    categoryOfClass(className, category);
    std::vector<ReplicationInfo> items;
    state().collectReplicationInfo(category, items);
    std::size_t modified = 0;
    out.reserve(entryBytes * items.size());
    for (const ReplicationInfo& item : items) {
        out.add(item.version.id().unidText());
        out.add(toDecimal(item.version.sequenceNumber()));
        out.add(stateText(item));
        out.add(toDecimal(item.userData));
        if (item.modified) ++modified;
    }
    logReplicationEntries(modified, items.size());
}

void MailReplicator::readApplicationPreferences() {
    PalmRecordBuffer buffer;
    try {
        palm().readPreference(buffer, mailPreferences);
    } catch (const PalmSyncApiError& error) {
        if (!error.isNotFound()) throw;
        return; // the user has chosen nothing yet
    }
    preferences_ = MailPreferences(buffer);
}

// A second attempt would fail like the first.
void MailReplicator::fetchSignature() {
    if (signatureLoaded_) return;
    signatureLoaded_ = true;
    try {
        PalmRecordBuffer buffer;
        palm().readPreference(buffer, signaturePreference);
        if (!buffer.isEmpty()) signature_.assign(buffer.data(), buffer.data() + buffer.size() - 1);
    } catch (...) { // mail without a signature is better than none
    }
}

std::string MailReplicator::wantedSignature(const PalmMailRecord& palm) const {
    return palm.wantsSignature() ? signature_ : std::string();
}

void MailReplicator::preReplicate() {
    palm().showProgress(Message::SendingMail);
    log() << "#t Sending new mail\n";
    mailDatabase_ = server().findMailDatabase();
    sendOutbox();
    palm().showProgress(Message::ProcessingDeletedFolder);
    log() << "#t Processing deleted folder\n";
    emptyDeletedFolder();
}

// The records of a folder, in the order of the walk. Those that the user has deleted are in none.
template <typename Visit>
void MailReplicator::walkFolder(std::uint8_t folder, Visit visit) {
    PalmRecordBuffer buffer;
    for (bool found = palm().readFirstInCategory(buffer, folder); found;
         found = palm().readNextInCategory(buffer)) {
        if (!buffer.isDeleted()) visit(buffer);
    }
}

void MailReplicator::sendOutbox() {
    std::map<std::uint32_t, Record> outbox; // all of it first: sending ends the walk
    walkFolder(PalmMailRecord::outbox, [&](PalmRecordBuffer& buffer) {
        outbox[buffer.recordId()] = readRecord(buffer, buffer.recordId(), buffer.isArchived());
    });
    for (const auto& [uid, record] : outbox) sendFromOutbox(uid, record);
}

// What can't be sent stays in the Outbox for the next session.
void MailReplicator::sendFromOutbox(std::uint32_t uid, const Record& record) {
    std::string subject;
    try {
        subject = record->description();
        PalmRecordGroup group;
        group.set(0, record);
        sendOutgoing(static_cast<const NotesMailRecord&>(*convertToNotes(group, true, isOutgoing)));
        forget(uid);
        palm().deleteRecord(uid);
    } catch (const Error& error) {
        logErrorChain(GeneralError(Message::SendMailFailed, error) << Tag('s') << subject);
    }
}

void MailReplicator::sendOutgoing(const NotesMailRecord& mail) {
    log() << "#t Sending new outgoing mail ('$s')" << Tag('s') << mail.subject << '\n';
    const std::string answered = mail.unid.empty() ? Unid().text() : mail.unid;
    sendOutgoingMail(server(), mailDatabase_, outgoingOptions(mail), answered, itemOf(mail));
}

// The mail is sent by now: whatever the state makes of it, the record is to go.
void MailReplicator::forget(std::uint32_t uid) {
    if (!hasState()) return;
    try {
        const auto known = static_cast<std::int32_t>(uid);
        if (state().findEntryByUid(known) != nullptr) state().removeEntry(state().itemIdOfUid(known));
    } catch (...) {
    }
}

void MailReplicator::emptyDeletedFolder() {
    std::map<ItemId, std::uint32_t> known;
    std::vector<ItemId> items;
    std::vector<std::uint32_t> local;
    walkFolder(PalmMailRecord::deleted, [&](PalmRecordBuffer& buffer) {
        const std::uint32_t uid = buffer.recordId();
        const auto knownUid = static_cast<std::int32_t>(uid);
        if (!hasState() || state().findEntryByUid(knownUid) == nullptr) {
            local.push_back(uid);
            return;
        }
        items.push_back(state().itemIdOfUid(knownUid));
        known[items.back()] = uid;
    });
    std::vector<ItemId> deleted;
    if (!items.empty()) sendDeletionList(items, deleted);
    for (const ItemId& item : deleted) {
        const auto found = known.find(item);
        if (found == known.end()) continue; // not asked for
        palm().deleteRecord(found->second);
        state().removeEntry(item);
        known.erase(found);
    }
    for (const std::uint32_t uid : local) palm().deleteRecord(uid);
}

} // namespace tsr
