#include "records/datebookMeeting.h"

#include <algorithm>

#include "foundation/GeneralError.h"
#include "foundation/epochs.h"
#include "foundation/signals.h"

namespace tsr {

namespace {

// Puts the further days of all-day events into a group, and stops where there are more than a database holds
// records: a few bytes of a meeting can ask for millions.
class DaySpreader {
public:
    explicit DaySpreader(PalmRecordGroup& group) : group_(group) {}

    // A record of one day for each day behind `start`, but none before `from`; returns the day that follows
    // them all. `record` keeps its whole duration.
    Date spread(const PalmDatebookRecord& record, const Date& start, const Date& from) {
        const std::int64_t days = daysOf(record);
        if (days < 2) return from;
        const Date end = start + TimeInterval::fromMinutes(days * minutesPerDay);
        for (Date date = std::max(start + oneDay_, from); date < end; date += oneDay_) addDay(record, date);
        return end;
    }

    void spread(const PalmDatebookRecord& record, const Date& start) { spread(record, start, start); }

    // The instances of one event, in the order of their days. What overlaps is the same record and is made
    // but once, so that the work is that of the days, whatever the number of instances.
    void spreadEach(const PalmDatebookRecord& record, const std::set<Date>& starts) {
        if (starts.empty()) return;
        Date from = *starts.begin();
        for (const Date& start : starts) from = spread(record, start, from);
    }

    bool addedDays() const { return furtherDays_ != 0; }

private:
    static constexpr std::int64_t minutesPerDay = 1440;

    // Durations come from 32 bits of minutes.
    static std::int64_t daysOf(const PalmDatebookRecord& record) {
        if (!record.allDay()) return 0;
        return (record.duration().minutes() + minutesPerDay - 1) / minutesPerDay;
    }

    void addDay(const PalmDatebookRecord& record, const Date& date) {
        if (++furtherDays_ >= mostMeetingDays) throw GeneralError(Message::IntegerTruncated);
        PalmDatebookRecord day = record;
        day.setDate(date);
        day.setDuration(oneDay_);
        group_.set(datebookTag(date), makeCounted<PalmDatebookRecord>(day));
    }

    PalmRecordGroup& group_;
    const TimeInterval oneDay_ = TimeInterval::fromDays(1);
    std::size_t furtherDays_ = 0;
};

PalmDatebookRecord changedInstance(const PalmDatebookRecord& meeting, const DatebookException& exception) {
    PalmDatebookRecord record = meeting;
    record.setDate(exception.date);
    record.setTime(exception.time);
    if (exception.hasSubject()) record.setDescription(exception.subject());
    if (exception.hasBody()) record.setNote(exception.body());
    if (exception.hasAllDay()) record.setAllDay(exception.allDay());
    if (exception.hasDuration()) record.setDuration(exception.duration());
    return record;
}

void addOnce(PalmRecordGroup& group, const PalmDatebookRecord& master, DaySpreader& spreader) {
    group.set(0, makeCounted<PalmDatebookRecord>(master));
    spreader.spread(master, master.date());
}

void addRepeating(PalmRecordGroup& group, const NotesDatebookRecord& meeting, const PalmDatebookRecord& plain,
                  DaySpreader& spreader) {
    if (!meeting.repeat->fitsDevice()) throw GeneralError(Message::NotImplemented);
    spreader.spreadEach(plain, meeting.instances);

    PalmDatebookRecord master = plain;
    master.setRepeat(*meeting.repeat);
    for (const Date& date : meeting.deletions) master.addException(date);
    for (const DatebookException& exception : meeting.exceptions) {
        master.addException(exception.patternDate);
        const PalmDatebookRecord record = changedInstance(plain, exception);
        spreader.spread(record, exception.date);
        group.set(datebookTag(exception.date), makeCounted<PalmDatebookRecord>(record));
    }
    group.set(0, makeCounted<PalmDatebookRecord>(master));
}

} // namespace

std::uint32_t datebookTag(const Date& date) { return static_cast<std::uint32_t>(daysSince1970(date)); }

const PalmDatebookRecord& datebookMember(const PalmRecordGroup::Member& member) {
    const auto* record = dynamic_cast<const PalmDatebookRecord*>(member.get());
    if (record == nullptr) throw BadPalmRecord();
    return *record;
}

PalmDatebookRecord toPalmRecord(const NotesDatebookRecord& meeting) {
    PalmDatebookRecord record;
    record.setDescription(meeting.subject);
    record.setNote(meeting.body);
    record.setDate(meeting.date);
    record.setTime(meeting.time);
    record.setDuration(meeting.duration);
    record.setAllDay(meeting.allDay);
    if (meeting.hasAlarm) record.setAlarm(meeting.alarmLead);
    record.setPrivate(meeting.isPrivate);
    return record;
}

PalmRecordGroup toPalmGroup(const NotesDatebookRecord& meeting, bool& spread) {
    PalmRecordGroup group;
    DaySpreader spreader(group);
    const PalmDatebookRecord plain = toPalmRecord(meeting);
    if (meeting.repeat->repeats()) {
        addRepeating(group, meeting, plain, spreader);
    } else {
        addOnce(group, plain, spreader);
    }
    spread = spreader.addedDays();
    return group;
}

CountedPtr<NotesDatebookRecord> toNotesMeeting(const PalmRecordGroup& group) {
    if (group.size() != 1) throw GeneralError(Message::WholeRecordNotSingle) << Tag('n') << group.size();
    const PalmDatebookRecord& record = datebookMember(group.get(0));
    auto meeting = makeCounted<NotesDatebookRecord>();
    meeting->subject = record.description();
    meeting->body = record.note();
    meeting->date = record.date();
    meeting->time = record.time();
    meeting->duration = record.duration();
    meeting->allDay = record.allDay();
    meeting->repeat = record.repeat().clone();
    meeting->hasAlarm = record.hasAlarm();
    meeting->alarmLead = record.alarmLead();
    meeting->isPrivate = record.isPrivate();
    meeting->deletions = record.exceptions();
    return meeting;
}

} // namespace tsr
