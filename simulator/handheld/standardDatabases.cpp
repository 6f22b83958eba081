#include "handheld/standardDatabases.h"

#include <algorithm>
#include <string>
#include <vector>

#include "handheld/ConfigurationDatabase.h"
#include "handheld/knownDatabases.h"

namespace tsr {

namespace {

constexpr std::uint32_t dataType = 0x44415441;  // "DATA"
constexpr std::uint16_t backupAttribute = 0x08; // copied to the desktop in a HotSync
constexpr std::size_t categoryNameBytes = 16;

std::vector<std::string> categoriesOf(const KnownApplication& application) {
    if (application.name == std::string("mail")) return {"Inbox", "Outbox", "Deleted", "Filed", "Draft"};
    return {"Unfiled", "Business", "Personal"};
}

// The standard category table: which names the user has changed (2 bytes), 16 names of 16 bytes, 16 ids of a
// byte, the last id given away, and a zero.
std::vector<std::uint8_t> categoryTable(const std::vector<std::string>& names) {
    std::vector<std::uint8_t> table(2 + HandheldRecord::categories * categoryNameBytes);
    for (std::size_t i = 0; i < names.size(); ++i) {
        const auto place = static_cast<std::ptrdiff_t>(2 + i * categoryNameBytes);
        std::copy(names[i].begin(), names[i].end(), table.begin() + place);
    }
    for (std::uint8_t id = 0; id < HandheldRecord::categories; ++id) table.push_back(id);
    table.push_back(HandheldRecord::categories - 1);
    table.push_back(0);
    return table;
}

} // namespace

void addStandardDatabases(Handheld& handheld) {
    for (const KnownApplication& application : knownApplications) {
        if (handheld.find(application.database)) continue;
        handheld.create(application.database, dataType, application.creator, backupAttribute)
            .setAppInfo(categoryTable(categoriesOf(application)));
    }
    ConfigurationDatabase configuration(handheld);
}

} // namespace tsr
