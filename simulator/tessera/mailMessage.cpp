#include "tessera/mailMessage.h"

#include <algorithm>

#include "interchange/mailAddresses.h"
#include "tessera/mailDocument.h"

namespace tsr {

namespace {

constexpr char domain[] = "@tessera.invalid";
constexpr std::size_t unidDigits = 32;

std::string idOf(const std::string& unid) { return unid.empty() ? unid : unid + domain; }

// Empty for the id of a message that no store holds.
std::string unidOf(const std::string& id) {
    const std::string unid = id.substr(0, unidDigits);
    const bool isUnid =
        unid.size() == unidDigits && unid.find_first_not_of("0123456789abcdef") == std::string::npos;
    return isUnid && id.substr(unidDigits) == domain ? unid : std::string();
}

} // namespace

MailMessage toMailMessage(const Document& document) {
    const Mail mail = toMail(document.properties);
    return {.from = mail.from,
            .replyTo = dividedAddresses(mail.replyTo),
            .to = mail.to,
            .cc = mail.cc,
            .bcc = mail.bcc,
            .subject = mail.subject,
            .date = mail.date,
            .body = mail.notice ? mail.notice->body : mail.body,
            .importance = static_cast<MailMessage::Importance>(mail.importance),
            .isRead = !mail.unread,
            .id = idOf(document.unid),
            .inReplyTo = idOf(mail.answers)};
}

Mail toMail(const MailMessage& message, std::int64_t now) {
    Mail mail;
    mail.folder = inboxFolder;
    mail.unread = !message.isRead;
    mail.from = message.from;
    mail.replyTo = joinedAddresses(message.replyTo, ", ");
    mail.to = message.to;
    mail.cc = message.cc;
    mail.bcc = message.bcc;
    mail.subject = message.subject;
    mail.body = message.body;
    mail.date = message.date.value_or(now);
    mail.importance = static_cast<int>(message.importance);
    mail.answers = unidOf(message.inReplyTo);
    return mail;
}

} // namespace tsr
