#include "records/NotesToDoRecord.h"

#include "foundation/GeneralError.h"
#include "foundation/epochs.h"
#include "foundation/hexadecimal.h"
#include "foundation/lines.h"
#include "foundation/narrowing.h"
#include "foundation/numbers.h"

namespace tsr {

namespace {

constexpr char differencesName[] = "#Differences";
constexpr char subjectName[] = "0037001F";
constexpr char bodyName[] = "00170041";
constexpr char priorityName[] = "00260003";
constexpr char dueDateName[] = "41050040";
constexpr char completedName[] = "410F0002";
constexpr char privateName[] = "00040002";
constexpr char categoryName[] = "Category";
constexpr char recursName[] = "Recurs";

std::string textFromHex(const std::string& digits) {
    std::vector<std::uint8_t> bytes;
    hexToBinary(digits, bytes);
    return normalizeLineEnds(std::string(bytes.begin(), bytes.end()));
}

// Due dates are days in UTC, whatever zone the user is in.
Date toDate(std::uint32_t seconds1993) {
    return DateTime(TimeStamp(1, toSeconds1970(seconds1993)), TimeZone()).date();
}

std::uint32_t toSeconds(const Date& date) {
    const TimeStamp midnight(DateTime(date, TimeOfDay()), TimeZone());
    return toSeconds1993(narrowToUnsigned(narrowToUnsignedWide(midnight.secondsSince1970())));
}

} // namespace

NotesToDoRecord::NotesToDoRecord(const NotesItem& item, const TimeZone&) {
    subject = firstValue(item, subjectName);
    body = textFromHex(firstValue(item, bodyName));
    const std::string due = firstValue(item, dueDateName);
    const std::uint32_t seconds = due.empty() ? 0 : parseUnsigned(due);
    hasDueDate = seconds != 0;
    if (hasDueDate) dueDate = toDate(seconds);
    priority = static_cast<std::int32_t>(parseUnsigned(firstValue(item, priorityName)));
    completed = firstValue(item, completedName) == "1";
    isPrivate = firstValue(item, privateName) != "0";
    if (hasProperty(item, categoryName)) categories = item.at(categoryName);
    if (!firstValue(item, recursName).empty())
        throw GeneralError(Message::RepeatingToDo) << Tag('s') << subject;
}

void NotesToDoRecord::addTo(NotesItem& item, const TimeZone&) const {
    addValue(item, differencesName, "0");
    addValue(item, subjectName, subject);
    addValue(item, bodyName, body);
    addValue(item, priorityName, toDecimal(static_cast<std::uint32_t>(priority)));
    if (hasDueDate) addValue(item, dueDateName, toDecimal(toSeconds(dueDate)));
    addValue(item, completedName, completed ? "1" : "0");
    if (isPrivate) addValue(item, privateName, "3");
    for (const std::string& category : categories) addValue(item, categoryName, category);
}

} // namespace tsr
