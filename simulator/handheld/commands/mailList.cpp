#include "handheld/commands/mailList.h"

#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <vector>

#include "handheld/commands/categoryName.h"
#include "handheld/commands/handheldText.h"
#include "handheld/forms/RecordForm.h"
#include "handheld/forms/fieldText.h"
#include "handheld/mailFolders.h"

namespace tsr {

namespace {

struct Entry {
    std::uint32_t id = 0;
    std::string folder{};
    bool isUnread = false;
    std::string with{}; // in the handheld's own characters, as the subject
    std::string date{};
    std::string subject{};
};

Entry toEntry(HandheldDatabase& database, const HandheldRecord& record) {
    const FieldValues fields = recordForm(mailDatabase)->read(record.data);
    const bool isOurs = record.category == mailOutbox || record.category == mailDrafts;
    Entry entry;
    entry.id = record.id;
    entry.folder = categoryText(database, record.category);
    entry.isUnread = fieldValue(fields, "read") != "yes" && !isOurs;
    entry.with = fieldValue(fields, isOurs ? "to" : "from");
    entry.date = fieldValue(fields, "date");
    if (!entry.date.empty()) entry.date += " " + fieldValue(fields, "time");
    entry.subject = fieldValue(fields, "subject");
    return entry;
}

std::vector<Entry> entriesOf(HandheldDatabase& database, std::optional<std::uint8_t> folder) {
    std::vector<HandheldRecord> records = database.records().all();
    std::erase_if(records, [&](const HandheldRecord& record) {
        return record.isGone() || record.category != folder.value_or(record.category);
    });
    std::stable_sort(records.begin(), records.end(), [](const HandheldRecord& a, const HandheldRecord& b) {
        return a.category < b.category;
    });
    std::vector<Entry> entries;
    for (const HandheldRecord& record : records) entries.push_back(toEntry(database, record));
    return entries;
}

// Padded or cut to a width in characters, as one byte is one.
std::string column(std::string text, std::size_t width) {
    if (text.size() > width) text = text.substr(0, width - 2) + "..";
    text.resize(width, ' ');
    return shownHandheldLine(text);
}

} // namespace

void listMail(std::ostream& out, HandheldDatabase& database, std::optional<std::uint8_t> folder, bool json) {
    const std::vector<Entry> entries = entriesOf(database, folder);
    if (json) {
        nlohmann::ordered_json list = nlohmann::ordered_json::array();
        for (const Entry& entry : entries) {
            list.push_back({{"id", entry.id},
                            {"folder", entry.folder},
                            {"unread", entry.isUnread},
                            {"with", fromHandheldText(entry.with)},
                            {"date", entry.date},
                            {"subject", fromHandheldText(entry.subject)}});
        }
        out << list.dump(2) << "\n";
        return;
    }
    out << "id        folder    new  from or to                date              subject\n";
    for (const Entry& entry : entries) {
        char id[16];
        std::snprintf(id, sizeof id, "0x%06X", static_cast<unsigned>(entry.id));
        out << id << "  " << column(toHandheldText(entry.folder), 8) << "  " << (entry.isUnread ? "*" : " ")
            << "    " << column(entry.with, 24) << "  " << column(entry.date, 16) << "  "
            << shownHandheldLine(entry.subject) << "\n";
    }
}

} // namespace tsr
