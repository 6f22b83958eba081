#include "replication/mailboxes.h"

#include <algorithm>

#include "foundation/lines.h"
#include "handheld/HandheldError.h"
#include "handheld/forms/MailForm.h"
#include "handheld/forms/fieldText.h"
#include "interchange/mailAddresses.h"
#include "replication/deviceText.h"
#include "tessera/mailDocument.h"

namespace tsr::test {

namespace {

std::string shownBody(std::string body) {
    body = normalizeLineEnds(body);
    body.erase(std::min(body.find("\n\n\n\n\n\n----- Vellum Info -----"), body.size()));
    body.erase(body.find_last_not_of('\n') + 1);
    return body;
}

std::string lineOf(const Mail& mail) {
    std::string addresses;
    for (const std::string& address : mail.to) addresses += (addresses.empty() ? "" : ", ") + address;
    const std::string body = mail.notice ? mail.notice->body : mail.body;
    return mail.folder + (mail.unread ? " * " : " - ") + mail.subject + " | " + addresses + " | "
         + shownBody(body);
}

Mail mailOf(const HandheldRecord& record) {
    const FieldValues values = MailForm().read(record.data);
    Mail mail;
    mail.folder = record.category == 0 ? inboxFolder : draftsFolder;
    mail.unread = !values.contains("read");
    mail.subject = fromDeviceText(fieldValue(values, "subject"));
    mail.to = dividedAddresses(fromDeviceText(fieldValue(values, "to")));
    mail.body = fromDeviceText(fieldValue(values, "body"));
    return mail;
}

std::string lineOf(const HandheldRecord& record) {
    try {
        return lineOf(mailOf(record));
    } catch (const HandheldError&) {
        return "unreadable";
    }
}

} // namespace

Strings mailOnDevice(const HandheldDatabase& database) {
    Strings lines;
    for (const HandheldRecord& record : database.records().all()) {
        if (!record.isGone() && (record.category == 0 || record.category == 4))
            lines.push_back(lineOf(record));
    }
    std::sort(lines.begin(), lines.end());
    return lines;
}

Strings mailInNotes(const std::vector<Document>& documents) {
    Strings lines;
    for (const Document& document : documents) {
        const Mail mail = toMail(document.properties);
        if (mail.folder != sentFolder) lines.push_back(lineOf(mail));
    }
    std::sort(lines.begin(), lines.end());
    return lines;
}

} // namespace tsr::test
