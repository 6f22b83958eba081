#include "handheld/standardDatabases.h"

#include <string>
#include <vector>

#include "handheld/CategoryTable.h"
#include "handheld/ConfigurationDatabase.h"
#include "handheld/knownDatabases.h"

namespace tsr {

namespace {

constexpr std::uint32_t dataType = 0x44415441;  // "DATA"
constexpr std::uint16_t backupAttribute = 0x08; // copied to the desktop in a HotSync

std::vector<std::string> categoriesOf(const KnownApplication& application) {
    if (application.name == std::string("mail")) return {"Inbox", "Outbox", "Deleted", "Filed", "Draft"};
    return {"Unfiled", "Business", "Personal"};
}

} // namespace

void addStandardDatabases(Handheld& handheld) {
    for (const KnownApplication& application : knownApplications) {
        if (handheld.find(application.database)) continue;
        handheld.create(application.database, dataType, application.creator, backupAttribute)
            .setAppInfo(CategoryTable::newBlock(categoriesOf(application)));
    }
    ConfigurationDatabase configuration(handheld);
}

} // namespace tsr
