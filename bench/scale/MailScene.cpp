#include "bench/scale/MailScene.h"

#include "records/PalmMailRecord.h"
#include "tessera/UserDatabase.h"
#include "tessera/mailDocument.h"

namespace tsr::bench {

namespace {

std::string subjectOf(std::size_t number) { return "Message " + std::to_string(number); }

const std::string body =
    "Dear Max,\nthe minutes of yesterday are in the usual place. Please look at them before "
    "Friday, and tell me what is missing.\nAnn\n";

} // namespace

MailScene::MailScene(std::size_t messages, Place place)
    : Scene(messages, *findApplication("mail"), "Mail", "MailSync", mailDatabaseKind, mailKind) {
    fill(place);
}

void MailScene::addToHandheld(HandheldDatabase& database, std::size_t number) {
    PalmMailRecord mail;
    mail.subject = subjectOf(number);
    mail.to = "Ann";
    mail.body = body;
    PalmRecordBuffer buffer;
    mail.write(buffer);
    database.addRecord({buffer.data(), buffer.data() + buffer.size()}, PalmMailRecord::drafts);
}

Properties MailScene::document(std::size_t number) {
    Mail mail;
    mail.folder = inboxFolder;
    mail.unread = true;
    mail.from = "Ann";
    mail.to = {"Max"};
    mail.subject = subjectOf(number);
    mail.body = body;
    mail.date = noon;
    Properties properties;
    setMail(properties, mail);
    return properties;
}

} // namespace tsr::bench
