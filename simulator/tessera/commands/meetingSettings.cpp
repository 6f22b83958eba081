#include "tessera/commands/meetingSettings.h"

#include <algorithm>

#include "tessera/TesseraError.h"
#include "tessera/commands/ArgumentError.h"
#include "tessera/commands/flags.h"
#include "tessera/commands/readings.h"
#include "tessera/commands/repeatTexts.h"
#include "tessera/meetingOccurrences.h"
#include "tessera/numbers.h"

namespace tsr {

namespace {

using std::chrono::sys_days;

constexpr std::uint32_t maxMinutes = 366 * minutesPerDay;
constexpr char never[] = "never";
constexpr char none[] = "none";

// The exception of the day, whether the pattern has it there or it was moved there.
std::vector<EventException>::iterator exceptionOn(MeetingPattern& pattern, sys_days day) {
    return std::find_if(pattern.exceptions.begin(), pattern.exceptions.end(), [day](const auto& each) {
        return each.patternDate == day || dayOf(each.start) == day;
    });
}

bool isDayOfRule(const MeetingPattern& pattern, sys_days day) {
    return !occurrences(pattern.rule, dayOf(pattern.start), day, day, 1).empty();
}

[[noreturn]] void raiseNoInstance(sys_days day) {
    throw TesseraError("the meeting does not take place on " + dateText(day));
}

void cancelDay(MeetingPattern& pattern, sys_days day) {
    const auto found = exceptionOn(pattern, day);
    if (found != pattern.exceptions.end()) {
        pattern.deletions.insert(found->patternDate);
        pattern.exceptions.erase(found);
    } else if (isDayOfRule(pattern, day) && !pattern.deletions.contains(day)) {
        pattern.deletions.insert(day);
    } else {
        raiseNoInstance(day);
    }
}

// As the rule has it.
void restoreDay(MeetingPattern& pattern, sys_days day) {
    const auto found = exceptionOn(pattern, day);
    if (found != pattern.exceptions.end()) {
        pattern.exceptions.erase(found);
    } else if (pattern.deletions.erase(day) == 0) {
        throw TesseraError("nothing was changed on " + dateText(day));
    }
}

EventException& changedDay(MeetingPattern& pattern, sys_days day) {
    const auto found = exceptionOn(pattern, day);
    if (found != pattern.exceptions.end()) return *found;
    if (!isDayOfRule(pattern, day) || pattern.deletions.contains(day)) raiseNoInstance(day);
    EventException exception;
    exception.patternDate = day;
    exception.start = secondsOf(day) + pattern.start - secondsOf(dayOf(pattern.start));
    const auto place = std::find_if(pattern.exceptions.begin(), pattern.exceptions.end(),
                                    [day](const auto& each) { return each.patternDate > day; });
    return *pattern.exceptions.insert(place, exception);
}

} // namespace

CLI::Option* MeetingSettings::addTo(CLI::App& command) {
    CLI::Option* start =
        command.add_option("--start", start_, "When it starts, such as \"2026-11-23 10:00\"");
    command.add_option("--minutes", minutes_, "How long it lasts; 60, or a whole day")
        ->check(CLI::Range(std::uint32_t{0}, maxMinutes));
    command.add_option("--subject", subject_, "What it is about");
    command.add_option("--note", note_, "A text of any length");
    addFlag(command, "--all-day,!--timed", allDay_, "Whether it takes whole days");
    addFlag(command, "--private,!--public", isPrivate_, "Whether others may see it");
    command.add_option("--alarm", alarm_, "Minutes before the start at which the handheld rings, or none");
    command.add_option("--repeat", repeat_, "daily, weekly, monthly-by-date, monthly-by-day or never");
    command.add_option("--every", every_, "How many days, weeks or months lie between; 1")
        ->check(CLI::Range(std::uint32_t{1}, maxRepeatInterval));
    command.add_option("--until", until_, "The last day that may count, or never");
    command
        .add_option("--on", on_,
                    "The days: mon,wed of weeks, 15 by date, 2-tue or last-fri by day; otherwise that of the "
                    "start. A handheld can't hold a meeting with several days of a month")
        ->delimiter(',');
    return start;
}

void MeetingSettings::addInstanceTo(CLI::App& command) {
    command.add_option("--instance", instance_,
                       "Changes one day of a meeting that repeats, such as 2026-11-30");
    command.add_flag("--cancel", cancel_, "The meeting does not take place on that day")->needs("--instance");
    command.add_flag("--restore", restore_, "That day is as all others again")
        ->needs("--instance")
        ->excludes("--cancel");
}

void MeetingSettings::apply(Meeting& meeting, const ZoneRule& zone) const {
    if (instance_) {
        applyToInstance(meeting);
        return;
    }
    if (subject_) meeting.subject = *subject_;
    if (note_) meeting.note = *note_;
    if (allDay_) meeting.allDay = *allDay_;
    if (minutes_) meeting.minutes = *minutes_;
    if (isPrivate_) meeting.isPrivate = *isPrivate_;
    if (alarm_ && *alarm_ == none) {
        meeting.alarm.reset();
    } else if (alarm_) {
        meeting.alarm = parseNumber(*alarm_);
        if (!meeting.alarm) throw ArgumentError("'" + *alarm_ + "' is not a number of minutes");
    }
    if (start_) applyStart(meeting, zone);
    applyRule(meeting, zone);
}

// A rule that had the day of the start has that of the new one.
void MeetingSettings::applyStart(Meeting& meeting, const ZoneRule& zone) const {
    const std::int64_t moment = parseMoment(*start_, zone);
    const std::int64_t local = zone.toLocal(moment);
    if (meeting.pattern) {
        RepeatRule usual = meeting.pattern->rule;
        setDefaultDays(usual, dayOf(meeting.pattern->start));
        if (usual == meeting.pattern->rule) setDefaultDays(meeting.pattern->rule, dayOf(local));
        meeting.pattern->start = local;
    }
    meeting.start = moment;
}

// Another way to repeat has other days, and so what was changed on the old ones is gone.
void MeetingSettings::applyRule(Meeting& meeting, const ZoneRule& zone) const {
    if (repeat_ && *repeat_ == never) {
        meeting.pattern.reset();
    } else if (repeat_) {
        MeetingPattern pattern;
        pattern.start = zone.toLocal(meeting.start);
        pattern.rule.unit = parseUnit(*repeat_);
        setDefaultDays(pattern.rule, dayOf(pattern.start));
        meeting.pattern = pattern;
    }
    if (!every_ && !until_ && on_.empty()) return;
    if (!meeting.pattern) throw ArgumentError("--every, --until and --on are for meetings that repeat");
    RepeatRule& rule = meeting.pattern->rule;
    if (every_) rule.interval = *every_;
    if (!on_.empty()) setRuleDays(rule, on_);
    if (until_ && *until_ == never) {
        rule.until.reset();
    } else if (until_) {
        rule.until = parseDate(*until_);
    }
}

void MeetingSettings::applyToInstance(Meeting& meeting) const {
    if (repeat_ || every_ || until_ || !on_.empty() || isPrivate_ || alarm_)
        throw ArgumentError("a day of its own has a start, minutes, a subject, a note and --all-day only");
    if (!meeting.pattern) throw TesseraError("the meeting does not repeat");
    const sys_days day = parseDate(*instance_);
    if (cancel_) {
        cancelDay(*meeting.pattern, day);
        return;
    }
    if (restore_) {
        restoreDay(*meeting.pattern, day);
        return;
    }
    EventException& exception = changedDay(*meeting.pattern, day);
    if (start_) exception.start = parseMoment(*start_, asItStands);
    if (minutes_) exception.minutes = *minutes_;
    if (subject_) exception.subject = *subject_;
    if (note_) exception.note = *note_;
    if (allDay_) exception.allDay = *allDay_;
}

} // namespace tsr
