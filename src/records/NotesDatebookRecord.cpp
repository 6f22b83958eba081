#include "records/NotesDatebookRecord.h"

#include "foundation/DateTime.h"
#include "foundation/TimeStamp.h"
#include "foundation/epochs.h"
#include "foundation/hexadecimal.h"
#include "foundation/lines.h"
#include "foundation/narrowing.h"
#include "foundation/numbers.h"
#include "records/RepeatsNeverInfo.h"
#include "records/meetingProperties.h"

namespace tsr {

namespace {

constexpr char differencesName[] = "#Differences";
constexpr char subjectName[] = "0037001F";
constexpr char bodyName[] = "00170041";
constexpr char allDayName[] = "42150003";
constexpr char durationName[] = "42130003";
constexpr char startName[] = "420D0040";
constexpr char alarmName[] = "45030002";
constexpr char alarmLeadName[] = "45010003";
constexpr char alarmSoundName[] = "4509001F";
constexpr char privateName[] = "00040002";
constexpr char chairName[] = "Chair";
constexpr char repeatStartTimeName[] = "RepeatStartTime";
constexpr char patternStartName[] = "PatternStartDate";
constexpr char instanceCountName[] = "InstanceCount";
constexpr char deletionCountName[] = "DeletionCount";
constexpr char exceptionCountName[] = "ExceptionCount";
constexpr char instance[] = "Instance.";
constexpr char instanceDate[] = ".Date";
constexpr char deletion[] = "Deletion.";
constexpr char deletionDate[] = ".OriginalDate";
constexpr char exception[] = "Exception.";

constexpr char on[] = "1";
constexpr char off[] = "0";
constexpr char alarmSound[] = "alarm1.wav";
constexpr char allDayDuration[] = "1";

TimeInterval requiredMinutes(const NotesItem& item, const std::string& name) {
    return TimeInterval::fromMinutes(requiredNumber(item, name));
}

DateTime requiredReading(const NotesItem& item, const std::string& name) {
    return utcReading(requiredNumber(item, name));
}

std::string hexAsText(const std::string& hex) {
    std::vector<std::uint8_t> bytes;
    hexToBinary(hex, bytes);
    return std::string(bytes.begin(), bytes.end());
}

std::string secondsSince1993(const DateTime& reading, const TimeZone& timeZone) {
    const std::int64_t seconds = TimeStamp(reading, timeZone).secondsSince1970();
    return toDecimal(toSeconds1993(narrowToUnsigned(static_cast<std::uint64_t>(seconds))));
}

// A count without its dates raises at the first that is missing, however large it is.
std::set<Date> readDates(const NotesItem& item, const char* countName, const char* before,
                         const char* after) {
    std::set<Date> dates;
    const std::string count = firstValue(item, countName);
    if (count.empty()) return dates;
    const std::uint32_t size = parseUnsigned(count);
    for (std::uint32_t i = 0; i < size; ++i) {
        dates.insert(requiredReading(item, numberedName(before, i, after)).date());
    }
    return dates;
}

DatebookException readException(const NotesItem& item, std::uint32_t number) {
    const std::string prefix = numberedName(exception, number, ".");
    DatebookException result;
    result.patternDate = requiredReading(item, prefix + "PatternDate").date();
    result.date = result.patternDate;
    if (hasProperty(item, prefix + "Date")) {
        const DateTime reading = requiredReading(item, prefix + "Date");
        result.date = reading.date();
        result.time = reading.timeOfDay();
    }
    if (hasProperty(item, prefix + "Subject")) result.setSubject(firstValue(item, prefix + "Subject"));
    if (hasProperty(item, prefix + "Body")) result.setBody(firstValue(item, prefix + "Body"));
    if (hasProperty(item, prefix + "AllDay")) result.setAllDay(firstValue(item, prefix + "AllDay") == on);
    if (hasProperty(item, prefix + "Duration")) {
        result.setDuration(requiredMinutes(item, prefix + "Duration"));
    }
    return result;
}

} // namespace

NotesDatebookRecord::NotesDatebookRecord() : repeat(makeCounted<RepeatsNeverInfo>()) {}

NotesDatebookRecord::NotesDatebookRecord(const NotesItem& item, const TimeZone& timeZone)
    : subject(firstValue(item, subjectName)), body(normalizeLineEnds(hexAsText(firstValue(item, bodyName)))) {
    readStart(item, timeZone);
    readAlarm(item);
    isPrivate = firstValue(item, privateName) != off;
    chair = firstValue(item, chairName);
    repeat = RepeatInfo::fromItem(item, timeZone);
    if (repeat->repeats()) readPattern(item);
}

void NotesDatebookRecord::readStart(const NotesItem& item, const TimeZone& timeZone) {
    const std::uint32_t seconds = toSeconds1970(requiredNumber(item, startName));
    const DateTime start(TimeStamp(1, seconds), timeZone);
    date = start.date();
    time = start.timeOfDay();
    duration = requiredMinutes(item, durationName);
    allDay = firstValue(item, allDayName) == on;
}

void NotesDatebookRecord::readAlarm(const NotesItem& item) {
    hasAlarm = firstValue(item, alarmName) == on;
    if (hasAlarm) alarmLead = requiredMinutes(item, alarmLeadName);
}

// The first day of the pattern stands apart from the time of day, which came through the zone.
void NotesDatebookRecord::readPattern(const NotesItem& item) {
    date = requiredReading(item, patternStartName).date();
    instances = readDates(item, instanceCountName, instance, instanceDate);
    deletions = readDates(item, deletionCountName, deletion, deletionDate);
    readExceptions(item);
}

// Numbered from 1, unlike instances and deletions.
void NotesDatebookRecord::readExceptions(const NotesItem& item) {
    const std::string count = firstValue(item, exceptionCountName);
    if (count.empty()) return;
    const std::uint32_t size = parseUnsigned(count);
    for (std::uint32_t i = 0; i < size; ++i) exceptions.insert(readException(item, i + 1));
}

void NotesDatebookRecord::addTo(NotesItem& item, const TimeZone& timeZone) const {
    const DateTime start(date, time);
    addValue(item, differencesName, off);
    addValue(item, subjectName, subject);
    addValue(item, bodyName, body);
    addDurationTo(item);
    addValue(item, startName, secondsSince1993(start, timeZone));
    addAlarmTo(item);
    if (isPrivate) addValue(item, privateName, on);
    repeat->addTo(item, timeZone);
    if (repeat->repeats()) addValue(item, repeatStartTimeName, toDecimal(time.hour() * 60 + time.minute()));
    addValue(item, patternStartName, minutesText(start, TimeZone()));
    addDeletionsTo(item);
}

void NotesDatebookRecord::addDurationTo(NotesItem& item) const {
    addValue(item, durationName, allDay ? allDayDuration : std::to_string(narrowToInt(duration.minutes())));
    addValue(item, allDayName, allDay ? on : off);
}

void NotesDatebookRecord::addAlarmTo(NotesItem& item) const {
    addValue(item, alarmName, hasAlarm ? on : off);
    if (!hasAlarm) return;
    addValue(item, alarmLeadName, std::to_string(narrowNonNegative(alarmLead.minutes())));
    addValue(item, alarmSoundName, alarmSound);
}

void NotesDatebookRecord::addDeletionsTo(NotesItem& item) const {
    addValue(item, deletionCountName, std::to_string(deletions.size()));
    std::uint32_t number = 0;
    for (const Date& day : deletions) {
        addValue(item, numberedName(deletion, number++, deletionDate),
                 minutesText(DateTime(day, time), TimeZone()));
    }
}

} // namespace tsr
