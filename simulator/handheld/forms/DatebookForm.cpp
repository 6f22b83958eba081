#include "handheld/forms/DatebookForm.h"

#include <algorithm>
#include <array>
#include <sstream>

#include "handheld/HandheldError.h"
#include "handheld/RecordReader.h"
#include "handheld/RecordWriter.h"
#include "handheld/forms/fieldText.h"

namespace tsr {

namespace {

constexpr std::uint32_t noTime = 0xFF;
constexpr std::uint32_t noDate = 0xFFFF;
constexpr std::uint32_t alarmFlag = 0x40;
constexpr std::uint32_t repeatFlag = 0x20;
constexpr std::uint32_t noteFlag = 0x10;
constexpr std::uint32_t exceptionFlag = 0x08;
constexpr std::uint32_t descriptionFlag = 0x04;
constexpr const char* alarmUnits = "mhd"; // minutes, hours, days

// By the number of the repeat type.
constexpr std::array<const char*, 6> repeatNames = {
    "", "daily", "weekly", "monthlyByDay", "monthlyByDate", "yearly"};

void readTimes(RecordReader& reader, FieldValues& values) {
    const std::uint32_t startHour = reader.number(1);
    const std::uint32_t startMinute = reader.number(1);
    const std::uint32_t endHour = reader.number(1);
    const std::uint32_t endMinute = reader.number(1);
    if (startHour == noTime) return;
    values["start"] = timeText(startHour, startMinute);
    values["end"] = timeText(endHour, endMinute);
}

void readAlarm(RecordReader& reader, FieldValues& values) {
    const std::uint32_t lead = reader.number(1);
    const std::uint32_t unit = reader.number(1);
    if (unit > 2) throw HandheldError("the alarm has an unknown unit");
    values["alarm"] = std::to_string(lead) + alarmUnits[unit];
}

void readRepeat(RecordReader& reader, FieldValues& values) {
    const std::uint32_t type = reader.number(1);
    reader.number(1);
    const std::uint32_t until = reader.number(2);
    const std::uint32_t every = reader.number(1);
    const std::uint32_t on = reader.number(1);
    reader.number(2);
    if (type == 0 || type >= repeatNames.size()) throw HandheldError("the event repeats in an unknown way");
    values["repeat"] = repeatNames[type];
    values["every"] = std::to_string(every);
    if (until != noDate) values["until"] = packedDateText(until);
    if (on != 0) values["on"] = std::to_string(on);
}

void readExceptions(RecordReader& reader, FieldValues& values) {
    std::string days;
    for (std::uint32_t count = reader.number(2); count > 0; --count) {
        days += (days.empty() ? "" : ",") + packedDateText(reader.number(2));
    }
    setField(values, "except", days);
}

void writeTimes(RecordWriter& record, const FieldValues& values) {
    const std::string start = fieldValue(values, "start");
    const std::string end = fieldValue(values, "end");
    if (start.empty() != end.empty()) throw FieldError("an event has both start and end, or none");
    if (start.empty()) {
        record.number(2, 0xFFFF).number(2, 0xFFFF);
        return;
    }
    const ClockTime from = parseTimeField("start", start);
    const ClockTime to = parseTimeField("end", end);
    if (std::pair(to.hour, to.minute) < std::pair(from.hour, from.minute))
        throw FieldError("end is before start");
    record.number(1, from.hour).number(1, from.minute).number(1, to.hour).number(1, to.minute);
}

// Each of these writes its block, if there is one, and gives its flag.
std::uint32_t writeAlarm(RecordWriter& record, const std::string& text) {
    if (text.empty()) return 0;
    const auto unit = std::string(alarmUnits).find(text.back());
    if (unit == std::string::npos)
        throw FieldError("alarm=" + text + ": a lead such as 15m, 2h or 1d is wanted");
    record.number(1, parseNumberField("alarm", text.substr(0, text.size() - 1), 255));
    record.number(1, static_cast<std::uint32_t>(unit));
    return alarmFlag;
}

std::uint32_t writeRepeat(RecordWriter& record, const FieldValues& values) {
    const std::string repeat = fieldValue(values, "repeat");
    if (repeat.empty()) return 0;
    const auto type = std::find(repeatNames.begin(), repeatNames.end(), repeat);
    if (type == repeatNames.end()) {
        throw FieldError("repeat=" + repeat
                         + ": daily, weekly, monthlyByDay, monthlyByDate or yearly is wanted");
    }
    const std::string until = fieldValue(values, "until");
    const std::string every = fieldValue(values, "every");
    const std::string on = fieldValue(values, "on");
    record.number(1, static_cast<std::uint32_t>(type - repeatNames.begin())).number(1, 0);
    record.number(2, until.empty() ? noDate : parseDateField("until", until));
    record.number(1, every.empty() ? 1 : parseNumberField("every", every, 255));
    record.number(1, on.empty() ? 0 : parseNumberField("on", on, 255)).number(2, 0);
    return repeatFlag;
}

std::uint32_t writeExceptions(RecordWriter& record, const std::string& text) {
    if (text.empty()) return 0;
    std::istringstream days(text);
    std::vector<std::uint16_t> packed;
    for (std::string day; std::getline(days, day, ',');) packed.push_back(parseDateField("except", day));
    std::sort(packed.begin(), packed.end());
    record.number(2, static_cast<std::uint32_t>(packed.size()));
    for (std::uint16_t day : packed) record.number(2, day);
    return exceptionFlag;
}

std::uint32_t writeText(RecordWriter& record, const std::string& text, std::uint32_t flag) {
    if (text.empty()) return 0;
    record.string(text);
    return flag;
}

} // namespace

std::vector<std::string> DatebookForm::fields() const {
    return {"description", "date",  "start", "end",    "alarm", "repeat",
            "every",       "until", "on",    "except", "note"};
}

FieldValues DatebookForm::read(const std::vector<std::uint8_t>& record) const {
    RecordReader reader(record);
    FieldValues values;
    readTimes(reader, values);
    values["date"] = packedDateText(reader.number(2));
    const std::uint32_t flags = reader.number(1);
    reader.number(1);
    if ((flags & alarmFlag) != 0) readAlarm(reader, values);
    if ((flags & repeatFlag) != 0) readRepeat(reader, values);
    if ((flags & exceptionFlag) != 0) readExceptions(reader, values);
    if ((flags & descriptionFlag) != 0) setField(values, "description", reader.string());
    if ((flags & noteFlag) != 0) setField(values, "note", reader.string());
    return values;
}

std::vector<std::uint8_t> DatebookForm::write(const FieldValues& values) const {
    RecordWriter blocks;
    std::uint32_t flags = writeAlarm(blocks, fieldValue(values, "alarm"));
    flags |= writeRepeat(blocks, values);
    flags |= writeExceptions(blocks, fieldValue(values, "except"));
    flags |= writeText(blocks, fieldValue(values, "description"), descriptionFlag);
    flags |= writeText(blocks, fieldValue(values, "note"), noteFlag);
    RecordWriter record;
    writeTimes(record, values);
    record.number(2, parseDateField("date", fieldValue(values, "date"))).number(1, flags).number(1, 0);
    return record.bytes(blocks.take()).take();
}

} // namespace tsr
