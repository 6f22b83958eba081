#include "records/NotesDatebookRecordDiffs.h"

#include "foundation/DateTime.h"
#include "foundation/TimeStamp.h"
#include "foundation/narrowing.h"
#include "records/datebookMeeting.h"
#include "records/meetingProperties.h"

namespace tsr {

namespace {

constexpr char differencesName[] = "#Differences";
constexpr char killName[] = "Exception.0.Kill";
constexpr char deletionCountName[] = "DeletionCount";
constexpr char deletion[] = "Deletion.";
constexpr char exceptionCountName[] = "ExceptionCount";
constexpr char exception[] = "Exception.";

constexpr char allDayDuration[] = "1";

std::string midnightText(const Date& date) { return minutesText(DateTime(date, TimeOfDay()), TimeZone()); }

Date dateOfTag(std::uint32_t tag) {
    constexpr std::int64_t secondsPerDay = 86400;
    return DateTime(TimeStamp(1, tag * secondsPerDay), TimeZone()).date();
}

DatebookExceptionDiff changedInstance(const Date& patternDate, const PalmDatebookRecord& record) {
    return {.patternDate = patternDate,
            .subject = record.description(),
            .body = record.note(),
            .allDay = record.allDay(),
            .date = record.date(),
            .time = record.time(),
            .duration = record.duration()};
}

} // namespace

void NotesDatebookRecordDiffs::addTo(NotesItem& item, const TimeZone& timeZone) const {
    addValue(item, differencesName, "1");
    if (kill_) addValue(item, killName, "Yes");
    addDeletionsTo(item);
    addExceptionsTo(item, timeZone);
}

void NotesDatebookRecordDiffs::addDeletionsTo(NotesItem& item) const {
    addValue(item, deletionCountName, std::to_string(deletions_.size()));
    std::uint32_t number = 0;
    for (const Date& date : deletions_)
        addValue(item, numberedName(deletion, number++, ".OriginalDate"), midnightText(date));
}

void NotesDatebookRecordDiffs::addExceptionsTo(NotesItem& item, const TimeZone& timeZone) const {
    const std::string count = std::to_string(exceptions_.size());
    addValue(item, exceptionCountName, count);
    std::uint32_t number = 0;
    for (const DatebookExceptionDiff& changed : exceptions_) {
        const auto name = [number](const char* field) { return numberedName(exception, number, field); };
        addValue(item, exceptionCountName, count); // once more for each, as the server has it
        addValue(item, name(".PatternDate"), midnightText(changed.patternDate));
        addValue(item, name(".Subject"), changed.subject);
        addValue(item, name(".Body"), changed.body);
        addValue(item, name(".AllDay"), changed.allDay ? "1" : "0");
        addValue(item, name(".Date"), minutesText(DateTime(changed.date, changed.time), timeZone));
        addValue(item, name(".Duration"),
                 changed.allDay ? allDayDuration
                                : std::to_string(narrowNonNegative(changed.duration.minutes())));
        ++number;
    }
}

std::string NotesDatebookRecordDiffs::description() const {
    return exceptions_.empty() ? "< Unknown >" : exceptions_.begin()->subject;
}

CountedPtr<NotesDatebookRecordDiffs> toNotesDifferences(const PalmRecordGroup& group) {
    const auto differences = makeCounted<NotesDatebookRecordDiffs>();
    if (group.contains(0)) differences->setKill();
    for (const auto& [tag, member] : group) {
        if (tag == 0) continue;
        const Date patternDate = dateOfTag(tag);
        if (member) {
            differences->addException(changedInstance(patternDate, datebookMember(member)));
        } else {
            differences->addDeletion(patternDate);
        }
    }
    return differences;
}

} // namespace tsr
