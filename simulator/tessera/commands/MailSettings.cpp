#include "tessera/commands/MailSettings.h"

#include "interchange/mailAddresses.h"
#include "tessera/commands/ArgumentError.h"
#include "tessera/commands/flags.h"
#include "tessera/commands/inputText.h"
#include "tessera/commands/mailTexts.h"
#include "tessera/commands/readings.h"
#include "tessera/mailDocument.h"

namespace tsr {

namespace {

using Texts = std::optional<std::vector<std::string>>;

void set(std::string& text, const std::optional<std::string>& given) {
    if (given) text = *given;
}

// The library's own option for an optional list takes an empty text for none at all.
void addTexts(CLI::App& command, const std::string& name, Texts& texts, const std::string& meaning) {
    command.add_option_function<std::vector<std::string>>(
        name, [&texts](const std::vector<std::string>& given) { texts = given; }, meaning);
}

void setAddresses(std::vector<std::string>& addresses, const Texts& given) {
    if (!given) return;
    addresses.clear();
    for (const std::string& text : *given) {
        for (const std::string& address : dividedAddresses(text)) addresses.push_back(address);
    }
}

} // namespace

CLI::Option* MailSettings::addTo(CLI::App& command) {
    command.add_option("--from", from_, "Whom it is from");
    addTexts(command, "--to", to_,
             "Whom it goes to; may be given several times, and hold several with commas");
    addTexts(command, "--cc", cc_, "Who gets a copy");
    addTexts(command, "--bcc", bcc_, "Who gets one that the others don't know of");
    command.add_option("--reply-to", replyTo_, "Whom an answer is to go to");
    CLI::Option* const subject = command.add_option("--subject", subject_, "What it is about, in one line");
    CLI::Option* const body = command.add_option("--body", body_, "The text");
    command.add_option("--file", file_, "A file with the text; - is the standard input")->excludes(body);
    command.add_option("--date", date_,
                       "When it was sent, or when the meeting of a notice starts; now for a new one");
    command.add_option("--importance", importance_, "high, normal or low");
    addFlag(command, "--unread,!--read", unread_, "Whether it is still to be read");
    addTexts(
        command, "--action", actions_,
        "What can be done with the meeting that it tells of, such as Accept; may be given several times, "
        "and makes it a notice");
    command.add_option("--notice-body", noticeBody_, "The text of a notice, in the place of the other");
    command.add_option("--room", room_, "Where the meeting of a notice is");
    command.add_option("--minutes", minutes_, "How long it takes");
    return subject;
}

bool MailSettings::changesContent() const {
    return from_ || replyTo_ || to_ || cc_ || bcc_ || subject_ || body_ || file_ || date_ || importance_
        || changesNotice();
}

void MailSettings::apply(const TesseraCommandLine& line, Mail& mail, const ZoneRule& zone) const {
    set(mail.from, from_);
    set(mail.replyTo, replyTo_);
    setAddresses(mail.to, to_);
    setAddresses(mail.cc, cc_);
    setAddresses(mail.bcc, bcc_);
    set(mail.subject, subject_);
    set(mail.body, body_);
    if (file_) mail.body = inputText(line, *file_);
    if (date_) mail.date = parseMoment(*date_, zone);
    if (importance_) mail.importance = parsedImportance(*importance_);
    if (changesNotice()) applyNotice(mail);
}

void MailSettings::applyNotice(Mail& mail) const {
    MeetingNotice notice = mail.notice.value_or(MeetingNotice());
    set(notice.body, noticeBody_);
    if (actions_) notice.actions = *actions_;
    set(notice.room, room_);
    notice.minutes = minutes_.value_or(notice.minutes);
    if (notice.body.empty() && notice.actions.empty())
        throw ArgumentError("what tells of a meeting has an --action or a --notice-body");
    mail.notice = notice;
}

} // namespace tsr
