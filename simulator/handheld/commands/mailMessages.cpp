#include "handheld/commands/mailMessages.h"

#include <array>
#include <chrono>

#include "handheld/HandheldError.h"
#include "handheld/commands/CommandLine.h"
#include "handheld/commands/databaseName.h"
#include "handheld/commands/handheldText.h"
#include "handheld/forms/RecordForm.h"
#include "handheld/forms/fieldText.h"
#include "handheld/mailFolders.h"
#include "interchange/calendarDays.h"
#include "interchange/calendarView.h"
#include "interchange/mailAddresses.h"

namespace tsr {

namespace {

using Importance = MailMessage::Importance;

constexpr std::int64_t secondsPerMinute = 60;

const RecordForm& form() { return *recordForm(mailDatabase); }

struct AddressField {
    const char* name;
    std::vector<std::string> MailMessage::*addresses;
};

// On the handheld each has a line of its own.
constexpr std::array<AddressField, 4> addressFields = {{{"to", &MailMessage::to},
                                                        {"cc", &MailMessage::cc},
                                                        {"bcc", &MailMessage::bcc},
                                                        {"replyTo", &MailMessage::replyTo}}};

const char* priorityOf(Importance importance) {
    if (importance == Importance::High) return "high";
    return importance == Importance::Low ? "low" : "normal";
}

Importance importanceOf(const std::string& priority) {
    if (priority == "high") return Importance::High;
    return priority == "low" ? Importance::Low : Importance::Normal;
}

std::string handheldText(const std::string& text) {
    try {
        return toHandheldText(text);
    } catch (const UsageError&) {
        throw UsageError("it has characters that the handheld has not");
    }
}

FieldValues toFields(const MailMessage& message) {
    FieldValues fields;
    const auto set = [&fields](const char* name, const std::string& text) {
        setField(fields, name, handheldText(text));
    };
    set("from", message.from);
    for (const auto& [name, addresses] : addressFields) set(name, joinedAddresses(message.*addresses, "\n"));
    set("subject", message.subject);
    set("body", message.body);
    set("priority", priorityOf(message.importance));
    if (message.isRead) set("read", "yes");
    if (!message.date) return fields;
    const std::string time = readingText(*message.date + message.zoneMinutes * secondsPerMinute);
    const std::size_t blank = time.find(' ');
    set("date", time.substr(0, blank));
    set("time", time.substr(blank + 1));
    return fields;
}

void add(HandheldDatabase& database, const MailMessage& message, std::uint8_t folder) {
    const std::vector<std::uint8_t> data = form().write(toFields(message));
    if (data.size() > HandheldRecord::maxBytes) throw UsageError("a record takes at most 65,535 bytes");
    if (database.addRecord(data, folder) == 0) throw HandheldError("the database is full");
}

// Empty for a date that no calendar has, as a damaged record may hold.
std::optional<std::int64_t> dateOf(const std::string& date, const std::string& time) {
    if (date.empty()) return std::nullopt;
    using namespace std::chrono;
    const year_month_day day(year(std::stoi(date.substr(0, 4))),
                             month(static_cast<unsigned>(std::stoi(date.substr(5, 2)))),
                             std::chrono::day(static_cast<unsigned>(std::stoi(date.substr(8, 2)))));
    if (!day.ok()) return std::nullopt;
    const std::size_t colon = time.find(':');
    const std::int64_t minutes = std::stoi(time.substr(0, colon)) * 60 + std::stoi(time.substr(colon + 1));
    return secondsOf(day) + minutes * secondsPerMinute;
}

} // namespace

std::vector<std::string> importMail(Handheld& handheld, const std::vector<MailMessage>& messages,
                                    std::uint8_t folder) {
    HandheldDatabase& database = findDatabase(handheld, mailDatabase);
    std::vector<std::string> refused;
    for (const MailMessage& message : messages) {
        const auto refuse = [&](const std::exception& error) {
            refused.push_back("'" + message.subject + "': " + error.what());
        };
        try {
            add(database, message, folder);
        } catch (const UsageError& error) {
            refuse(error);
        } catch (const FieldError& error) {
            refuse(error);
        }
    }
    return refused;
}

MailMessage toMailMessage(const HandheldRecord& record) {
    FieldValues fields = form().read(record.data);
    for (auto& [name, value] : fields) value = fromHandheldText(value);
    MailMessage message;
    message.from = joinedAddresses(dividedAddresses(fieldValue(fields, "from")), ", ");
    for (const auto& [name, addresses] : addressFields)
        message.*addresses = dividedAddresses(fieldValue(fields, name));
    message.subject = fieldValue(fields, "subject");
    message.body = fieldValue(fields, "body");
    message.importance = importanceOf(fieldValue(fields, "priority"));
    message.isRead = fieldValue(fields, "read") == "yes";
    message.date = dateOf(fieldValue(fields, "date"), fieldValue(fields, "time"));
    message.id = "mail-" + std::to_string(record.id) + "@tessera.invalid";
    return message;
}

std::vector<MailMessage> mailOf(HandheldDatabase& database, std::optional<std::uint8_t> folder) {
    std::vector<MailMessage> messages;
    database.records().forEach([&](const HandheldRecord& record) {
        if (!record.isGone() && record.category == folder.value_or(record.category))
            messages.push_back(toMailMessage(record));
    });
    return messages;
}

} // namespace tsr
