#include "tessera/commands/mailFiles.h"

#include <ctime>

#include "tessera/TesseraError.h"
#include "tessera/mailDocument.h"
#include "tessera/mailMessage.h"

namespace tsr {

std::vector<std::string> importMail(Store& store, const User& user, const std::vector<MailMessage>& messages,
                                    const std::string& folder) {
    const std::int64_t databaseId = store.mailDatabase(user.id).id;
    std::vector<std::string> refused;
    for (const MailMessage& message : messages) {
        Mail mail = toMail(message, std::time(nullptr));
        mail.folder = folder;
        Properties properties;
        try {
            setMail(properties, mail);
        } catch (const TesseraError& error) {
            refused.push_back("'" + message.subject + "': " + error.what());
            continue;
        }
        store.addDocument(databaseId, mailKind, properties);
    }
    return refused;
}

std::vector<MailMessage> mailOf(Store& store, const User& user, const std::string& folder) {
    std::vector<MailMessage> messages;
    for (const Document& document : store.documents(store.mailDatabase(user.id).id, mailKind)) {
        if (folder.empty() || toMail(document.properties).folder == folder)
            messages.push_back(toMailMessage(document));
    }
    return messages;
}

} // namespace tsr
