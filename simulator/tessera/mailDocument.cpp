#include "tessera/mailDocument.h"

#include <algorithm>
#include <utility>

#include "tessera/TesseraError.h"
#include "tessera/numbers.h"

namespace tsr {

namespace {

namespace names = mailProperties;

constexpr char set[] = "1";

struct TextField {
    const char* name;
    std::string Mail::*text;
};
constexpr TextField textFields[] = {
    {names::from, &Mail::from}, {names::replyTo, &Mail::replyTo}, {names::subject, &Mail::subject},
    {names::body, &Mail::body}, {names::answers, &Mail::answers},
};

struct AddressField {
    const char* name;
    std::vector<std::string> Mail::*addresses;
};
constexpr AddressField addressFields[] = {
    {names::to, &Mail::to}, {names::cc, &Mail::cc}, {names::bcc, &Mail::bcc}};

struct FlagField {
    const char* name;
    bool Mail::*flag;
};
constexpr FlagField flagFields[] = {{names::unread, &Mail::unread},
                                    {names::returnReceipt, &Mail::returnReceipt},
                                    {names::deliveryReport, &Mail::deliveryReport}};

std::uint32_t numberOf(const Properties& properties, const char* name) {
    return parseNumber(firstValue(properties, name)).value_or(0);
}

int importanceOf(const Properties& properties) {
    const std::uint32_t importance = numberOf(properties, names::importance);
    return importance >= Mail::High && importance <= Mail::Low ? static_cast<int>(importance) : Mail::Normal;
}

std::optional<MeetingNotice> noticeOf(const Properties& properties) {
    MeetingNotice notice;
    notice.body = firstValue(properties, names::noticeBody);
    notice.actions = filledValues(properties, names::actions);
    notice.room = firstValue(properties, names::room);
    notice.minutes = numberOf(properties, names::duration);
    if (notice.body.empty() && notice.actions.empty()) return std::nullopt;
    return notice;
}

void setNotice(Properties& properties, const std::optional<MeetingNotice>& notice) {
    setFilled(properties, names::noticeBody, {notice ? notice->body : ""});
    setFilled(properties, names::actions, notice ? notice->actions : std::vector<std::string>());
    setFilled(properties, names::room, {notice ? notice->room : ""});
    setFilled(properties, names::duration, {notice ? std::to_string(notice->minutes) : ""});
}

void checkMail(const Mail& mail) {
    if (mail.folder != inboxFolder && mail.folder != draftsFolder && mail.folder != sentFolder)
        throw TesseraError("'" + mail.folder + "' is not a folder of mail: Inbox, Drafts or Sent");
    if (mail.importance < Mail::High || mail.importance > Mail::Low)
        throw TesseraError("the importance of a message is 1, 2 or 3");
    if (mail.date < firstNotesSecond || mail.date > lastNotesSecond)
        throw TesseraError("the date of a message must be after 1992 and before 2129-02-08");
}

Document addMail(Store& store, std::int64_t userId, const Mail& mail) {
    Properties properties;
    setMail(properties, mail);
    return store.addDocument(store.mailDatabase(userId).id, mailKind, properties);
}

} // namespace

Mail toMail(const Properties& properties) {
    Mail mail;
    mail.folder = firstValue(properties, names::folder);
    for (const TextField& field : textFields) mail.*field.text = firstValue(properties, field.name);
    for (const AddressField& field : addressFields)
        mail.*field.addresses = filledValues(properties, field.name);
    for (const FlagField& field : flagFields) mail.*field.flag = firstValue(properties, field.name) == set;
    mail.date = firstNotesSecond + numberOf(properties, names::date);
    mail.importance = importanceOf(properties);
    mail.notice = noticeOf(properties);
    return mail;
}

void setMail(Properties& properties, const Mail& mail) {
    checkMail(mail);
    properties[names::folder] = {mail.folder};
    for (const TextField& field : textFields) setFilled(properties, field.name, {mail.*field.text});
    for (const AddressField& field : addressFields) setFilled(properties, field.name, mail.*field.addresses);
    for (const FlagField& field : flagFields)
        setFilled(properties, field.name, {mail.*field.flag ? set : ""});
    properties[names::date] = {std::to_string(mail.date - firstNotesSecond)};
    properties[names::importance] = {std::to_string(mail.importance)};
    setNotice(properties, mail.notice);
}

Document deliver(Store& store, std::int64_t userId, Mail mail) {
    mail.folder = inboxFolder;
    mail.unread = true;
    return addMail(store, userId, mail);
}

Document saveDraft(Store& store, std::int64_t userId, Mail mail) {
    mail.folder = draftsFolder;
    mail.unread = false;
    return addMail(store, userId, mail);
}

void markUnread(Store& store, std::int64_t userId, const std::string& unid, bool unread) {
    store.annotateDocument(store.mailDatabase(userId).id, unid, names::unread, unread ? set : "");
}

std::vector<Document> mailIn(Store& store, std::int64_t userId, const std::string& folder) {
    std::vector<Document> documents = store.documents(store.mailDatabase(userId).id, mailKind);
    std::erase_if(documents, [&folder](const Document& document) {
        return firstValue(document.properties, names::folder) != folder;
    });
    return documents;
}

} // namespace tsr
