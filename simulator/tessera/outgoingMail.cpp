#include "tessera/outgoingMail.h"

#include "tessera/RequestRefused.h"
#include "tessera/handheldMail.h"
#include "tessera/mailAccess.h"
#include "tessera/mailDelivery.h"
#include "tessera/mailDocument.h"
#include "tessera/replicatedItems.h"

namespace tsr {

namespace {

namespace names = mailProperties;

constexpr std::size_t mostAddresses = 1000;

bool isUnid(const std::string& text) {
    return text.size() == newItemName.unid.size() && text != newItemName.unid
        && text.find_first_not_of("0123456789abcdefABCDEF") == std::string::npos;
}

// Seven characters, of which the second is "C" where the delivery is to be reported, the third the importance
// and the fifth "1" where a receipt is wanted.
void readOptions(const RequestContext& context, std::size_t index, Mail& mail) {
    const std::string& options = context.strings[index];
    if (options.size() != 7 || options[2] < '1' || options[2] > '3')
        throw RequestRefused(ResultCode::BadRequest,
                             context.quoted(index) + " are not options of outgoing mail.");
    mail.deliveryReport = options[1] == 'C';
    mail.importance = options[2] - '0';
    mail.returnReceipt = options[4] == '1';
}

Mail outgoingMail(const RequestContext& context, const User& sender) {
    Mail mail = toMail(adoptMail({}, sentProperties(context, 4)));
    mail.folder = sentFolder;
    mail.from = sender.name;
    mail.date = context.now;
    readOptions(context, 1, mail);
    if (isUnid(context.strings[2])) mail.answers = context.strings[2];
    return mail;
}

void checkAddresses(const Mail& mail) {
    const std::size_t count = mail.to.size() + mail.cc.size() + mail.bcc.size();
    if (count == 0) throw RequestRefused(ResultCode::ItemRefused, "The mail is addressed to nobody.");
    if (count > mostAddresses)
        throw RequestRefused(ResultCode::ItemRefused,
                             "The mail has more than " + std::to_string(mostAddresses) + " addresses.");
}

} // namespace

std::vector<std::string> sendMail(const RequestContext& context) {
    context.expectAtLeast(4);
    confirmSentMail(context);
    context.countItem();
    const UserDatabase database = namedDatabase(context);
    const User sender = context.user();
    const Mail mail = outgoingMail(context, sender);
    if (context.faults.refusesMail(mail.subject))
        throw RequestRefused(ResultCode::ItemRefused, "The mail is refused by order.");
    checkAddresses(mail);
    Properties properties;
    setMail(properties, mail);
    properties.erase(names::date); // as the same mail has another one when it comes again
    auto copy = takenBefore(mailApplication, context, database, properties);
    if (!copy) {
        SqliteTransaction transaction = context.store.transaction();
        copy = newDocument(mailApplication, context, database, properties,
                           {{names::date, {dateText(mail.date)}}});
        deliverToAll(context.store, sender, mail);
        transaction.commit();
    }
    context.session.sentMail.emplace(database.id, copy->unid);
    return {};
}

} // namespace tsr
