#include "tessera/mailDelivery.h"

#include <utility>

#include "tessera/addressees.h"
#include "tessera/mailDocument.h"

namespace tsr {

namespace {

Mail failureReport(const Mail& mail, const std::vector<Addressees::Unknown>& unknown) {
    Mail report;
    report.from = "Mail Delivery";
    report.to = {mail.from};
    report.subject = "Delivery failure: " + mail.subject;
    report.date = mail.date;
    report.body = "This message was not delivered to\n\n";
    for (const auto& [address, reason] : unknown) report.body += "  " + address + ": " + reason + '\n';
    report.body += "\nIts text:\n\n" + mail.body;
    return report;
}

} // namespace

void deliverToAll(Store& store, const User& sender, Mail mail) {
    std::vector<std::string> addresses = mail.to;
    addresses.insert(addresses.end(), mail.cc.begin(), mail.cc.end());
    addresses.insert(addresses.end(), mail.bcc.begin(), mail.bcc.end());
    const Addressees addressees = findAddressees(store, addresses);
    mail.from = sender.name;
    mail.bcc.clear();
    SqliteTransaction transaction = store.transaction();
    for (const User& user : addressees.users) deliver(store, user.id, mail);
    if (!addressees.unknown.empty()) deliver(store, sender.id, failureReport(mail, addressees.unknown));
    transaction.commit();
}

} // namespace tsr
