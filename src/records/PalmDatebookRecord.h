#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "foundation/CountedPtr.h"
#include "foundation/Date.h"
#include "foundation/TimeInterval.h"
#include "foundation/TimeOfDay.h"
#include "records/PalmApplicationRecord.h"
#include "records/RepeatInfo.h"

namespace tsr {

// One Date Book record of the handheld. Integers are big-endian, dates packed as in foundation/deviceDate.h.
//
//   offset  size  field
//   0       4     start hour and minute, end hour and minute; all four 0xFF for an event without a time
//   4       2     date
//   6       1     flags; what follows the next byte is there where its flag is set
//   7       1     0
//           2     0x40 alarm: lead, and its unit, 0 minutes, 1 hours, 2 days
//           8     0x20 repeat:
//                   1  type: 1 daily, 2 weekly, 3 monthly by day, 4 monthly by date, 5 yearly; 0 is refused
//                   1  0
//                   2  end date; 0xFFFF is forever
//                   1  frequency
//                   1  weekly: mask of days; monthly by day: (instance - 1) * 7 + weekday; else 0
//                   1  start of the week, not read, written 0
//                   1  0
//           2+2n  0x08 exceptions: count, and the dates on which the repeat does not occur
//           n+1   0x04 description, ends with a NUL
//           n+1   0x10 note, ends with a NUL
//
// The secret attribute of the buffer is `isPrivate`. Several records can make up one meeting: in their
// PalmRecordGroup tag 0 is the master, and any other tag the days from 1970-01-01 to the date of its record.
class PalmDatebookRecord : public PalmApplicationRecord {
public:
    PalmDatebookRecord();

    // Parses the whole of `buffer`. Raises DateTooEarly, InvalidDate, InvalidTime, InvalidAlarmUnits,
    // UnknownRepeatNumber, InternalError for a repeat of type 0, IntegerUnderrun, MissingNul, ExcessData;
    // and, where the end comes before the start, a plain text that is no Error.
    PalmDatebookRecord(PalmRecordBuffer& buffer, bool archived);

    const RepeatInfo& repeat() const { return *repeat_; }
    void setRepeat(const RepeatInfo& rule) { repeat_ = rule.clone(); }
    void setDescription(std::string description);

    // A parsed record has the note's bytes in hexadecimal, as Notes wants them; one built from Notes has
    // plain text. What stands here is written.
    const std::string& note() const { return *note_; }
    void setNote(std::string note);

    bool allDay() const { return allDay_; } // without a time
    void setAllDay(bool allDay) { allDay_ = allDay; }
    const Date& date() const { return date_; }
    void setDate(const Date& date) { date_ = date; }
    const TimeOfDay& time() const { return time_; }
    void setTime(const TimeOfDay& time) { time_ = time; }
    const TimeInterval& duration() const { return duration_; }
    void setDuration(const TimeInterval& duration) { duration_ = duration; }
    bool hasAlarm() const { return hasAlarm_; }
    const TimeInterval& alarmLead() const { return alarmLead_; }
    void setAlarm(const TimeInterval& lead); // and there is one from now on
    bool isPrivate() const { return isPrivate_; }
    void setPrivate(bool isPrivate) { isPrivate_ = isPrivate; }
    const std::string& chair() const { return chair_; }
    void setChair(std::string chair) { chair_ = std::move(chair); }
    const std::vector<std::string>& invitees() const { return invitees_; }
    void addInvitee(std::string invitee) { invitees_.push_back(std::move(invitee)); }
    const std::set<Date>& exceptions() const { return exceptions_; }
    void addException(const Date& date) { exceptions_.insert(date); }

    std::uint8_t category() const override { return 0; } // the Date Book has none
    std::string description() const override { return *description_; }
    // Leaves the buffer's category alone. Raises InvalidDay or InvalidDate for a day of the month that the
    // months at the start lack, UnsuitableRepeatInterval above 255, IntegerSignLost for a negative alarm
    // lead.
    std::uint16_t write(PalmRecordBuffer& buffer) const override;

private:
    using Text = CountedPtr<const std::string>;

    void parseTimes(PalmRecordBuffer& buffer);
    void setTimes(std::uint8_t startHour, std::uint8_t startMinute, std::uint8_t endHour,
                  std::uint8_t endMinute);
    void parseAlarm(PalmRecordBuffer& buffer);
    void parseRepeat(PalmRecordBuffer& buffer);
    void parseExceptions(PalmRecordBuffer& buffer);

    void writeTimes(PalmRecordBuffer& buffer) const;
    void writeAlarm(PalmRecordBuffer& buffer) const;
    void writeRepeat(PalmRecordBuffer& buffer) const;
    void writeExceptions(PalmRecordBuffer& buffer) const;
    Date patternDate() const;
    std::uint8_t repeatOn() const;

    CountedPtr<RepeatInfo> repeat_; // never null; copies share it
    // Never null, and shared by copies too: a meeting of many days has one record for each of them.
    Text description_;
    Text note_;
    bool allDay_ = false;
    Date date_;
    TimeOfDay time_;
    TimeInterval duration_;
    bool hasAlarm_ = false;
    TimeInterval alarmLead_;
    bool isPrivate_ = false;
    std::string chair_; // no conversion fills it, nor the invitees
    std::vector<std::string> invitees_;
    std::set<Date> exceptions_;
};

} // namespace tsr
