#include "handheld/forms/MailForm.h"

#include <algorithm>
#include <array>

#include "handheld/RecordReader.h"
#include "handheld/RecordWriter.h"
#include "handheld/forms/fieldText.h"

namespace tsr {

namespace {

constexpr std::array<const char*, 8> textNames = {"subject", "from",    "to",     "cc",
                                                  "bcc",     "replyTo", "sentTo", "body"};
constexpr std::array<const char*, 3> priorities = {"high", "normal", "low"};
constexpr unsigned priorityShift = 10;
constexpr std::uint32_t keptBits = 0x03FF; // of no known meaning

struct FlagName {
    std::uint32_t bit;
    const char* name;
};
constexpr std::array<FlagName, 4> flagNames = {
    {{0x8000, "read"}, {0x4000, "signature"}, {0x2000, "confirmRead"}, {0x1000, "confirmDelivery"}}};

std::uint32_t parsePriority(const std::string& text) {
    if (text.empty()) return 1;
    const auto found = std::find(priorities.begin(), priorities.end(), text);
    if (found == priorities.end()) throw FieldError("priority=" + text + ": high, normal or low is wanted");
    return static_cast<std::uint32_t>(found - priorities.begin());
}

std::uint32_t flagsOf(const FieldValues& values) {
    const std::string kept = fieldValue(values, "bits");
    std::uint32_t flags = kept.empty() ? 0 : parseNumberField("bits", kept, keptBits);
    flags |= parsePriority(fieldValue(values, "priority")) << priorityShift;
    for (const auto& [bit, name] : flagNames) {
        if (parseFlagField(name, fieldValue(values, name))) flags |= bit;
    }
    return flags;
}

} // namespace

std::vector<std::string> MailForm::fields() const {
    std::vector<std::string> names(textNames.begin(), textNames.end());
    names.insert(names.end(), {"date", "time", "priority"});
    for (const FlagName& flag : flagNames) names.emplace_back(flag.name);
    names.emplace_back("bits");
    return names;
}

FieldValues MailForm::read(const std::vector<std::uint8_t>& record) const {
    RecordReader reader(record);
    FieldValues values;
    const std::uint32_t date = reader.number(2);
    const std::uint32_t hour = reader.number(1);
    const std::uint32_t minute = reader.number(1);
    if (date != 0) values["date"] = packedDateText(date);
    if (date != 0) values["time"] = timeText(hour, minute);
    const std::uint32_t flags = reader.number(2);
    values["priority"] = priorities[std::min<std::size_t>(flags >> priorityShift & 3, priorities.size() - 1)];
    if ((flags & keptBits) != 0) values["bits"] = std::to_string(flags & keptBits);
    for (const auto& [bit, name] : flagNames) {
        if ((flags & bit) != 0) values[name] = "yes";
    }
    for (const char* name : textNames) setField(values, name, reader.string());
    return values;
}

std::vector<std::uint8_t> MailForm::write(const FieldValues& values) const {
    const std::string date = fieldValue(values, "date");
    const std::string time = fieldValue(values, "time");
    const ClockTime clock = time.empty() ? ClockTime{0, 0} : parseTimeField("time", time);
    RecordWriter record;
    record.number(2, date.empty() ? 0 : parseDateField("date", date))
        .number(1, clock.hour)
        .number(1, clock.minute);
    record.number(2, flagsOf(values));
    for (const char* name : textNames) record.string(fieldValue(values, name));
    return record.number(1, 0).take();
}

} // namespace tsr
