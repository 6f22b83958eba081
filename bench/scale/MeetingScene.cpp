#include "bench/scale/MeetingScene.h"

#include "handheld/forms/DatebookForm.h"
#include "tessera/Meeting.h"
#include "tessera/UserDatabase.h"

namespace tsr::bench {

namespace {

using std::chrono::days;
using std::chrono::sys_days;

const sys_days firstDay = std::chrono::year(2002) / 1 / 1;

sys_days dayOfMeeting(std::size_t number) { return firstDay + days(static_cast<int>(number % 365)); }

int hourOf(std::size_t number) { return 8 + static_cast<int>(number / 365 % 10); }

bool repeats(std::size_t number) { return number % 5 == 0; }

std::uint8_t weekdayMask(sys_days day) {
    return static_cast<std::uint8_t>(1u << std::chrono::weekday(day).c_encoding());
}

std::string subjectOf(std::size_t number) { return "Meeting " + std::to_string(number); }

std::string padded(unsigned number) { return (number < 10 ? "0" : "") + std::to_string(number); }

std::string dateText(sys_days day) {
    const std::chrono::year_month_day date(day);
    return std::to_string(int{date.year()}) + '-' + padded(unsigned{date.month()}) + '-'
         + padded(unsigned{date.day()});
}

} // namespace

MeetingScene::MeetingScene(std::size_t meetings, Place place)
    : Scene(meetings, *findApplication("datebook"), "Date Book", "DatebookSync", mailDatabaseKind,
            meetingKind) {
    fill(place);
}

void MeetingScene::addToHandheld(HandheldDatabase& database, std::size_t number) {
    const sys_days day = dayOfMeeting(number);
    const auto hour = static_cast<unsigned>(hourOf(number));
    FieldValues values{{"description", subjectOf(number)},
                       {"date", dateText(day)},
                       {"start", padded(hour) + ":00"},
                       {"end", padded(hour) + ":45"},
                       {"note", "In the small room"}};
    if (repeats(number)) {
        values["repeat"] = "weekly";
        values["on"] = std::to_string(weekdayMask(day));
        values["until"] = dateText(day + days(56));
    }
    database.addRecord(DatebookForm().write(values));
}

Properties MeetingScene::document(std::size_t number) {
    const sys_days day = dayOfMeeting(number);
    Meeting meeting{.subject = subjectOf(number), .start = secondsOf(day) + hourOf(number) * 3600};
    meeting.minutes = 45;
    meeting.note = "In the small room";
    if (repeats(number)) {
        RepeatRule rule{.unit = RepeatRule::Unit::Week, .until = day + days(56)};
        rule.daysOfWeek = weekdayMask(day);
        meeting.pattern = MeetingPattern{.rule = rule, .start = meeting.start};
    }
    return toProperties(meeting);
}

} // namespace tsr::bench
