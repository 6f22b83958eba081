#pragma once

#include <set>
#include <string>
#include <vector>

#include "foundation/CountedPtr.h"
#include "foundation/Date.h"
#include "foundation/TimeInterval.h"
#include "foundation/TimeOfDay.h"
#include "records/DatebookException.h"
#include "records/NotesApplicationRecord.h"
#include "records/RepeatInfo.h"

namespace tsr {

// One meeting of the Notes calendar: a master, the rule by which it repeats, the days on which it occurs, the
// days that were taken out, and the instances that were changed. Its start is a moment in Notes and a reading
// of the clock here.
//
//   property                        value
//   "#Differences"                  "0": the whole meeting; sent only
//   "0037001F"                      subject
//   "00170041"                      body: arrives in hexadecimal, line ends become LF; sent as it stands
//   "42150003"                      "1": all day
//   "42130003"                      duration in minutes; an all-day meeting sends "1"
//   "420D0040"                      start: seconds since 1993, UTC
//   "45030002"                      "1": alarm
//   "45010003"                      its lead in minutes, where there is one
//   "4509001F"                      "alarm1.wav" with an alarm; sent only
//   "00040002"                      private, unless it is "0"; sent only when private, as "1"
//   "Chair"                         read only
//   repeat properties               see RepeatInfo and its classes; what follows counts only with a rule
//   "RepeatStartTime"               hour * 60 + minute; sent only
//   "PatternStartDate"              minutes since 1601; sent without a rule too
//   "InstanceCount"                 with "Instance.%d.Date" from 0; read only
//   "DeletionCount"                 with "Deletion.%d.OriginalDate" from 0; the count is sent when 0 too
//   "ExceptionCount"                with "Exception.%d." and PatternDate, Date, Subject, Body, AllDay and
//                                   Duration from 1; read only
//
// The days of the pattern, its instances, deletions and exceptions are readings in UTC, as minutes since
// 1601, so that a change of zone cannot move them to another day.
class NotesDatebookRecord : public NotesApplicationRecord {
public:
    NotesDatebookRecord();

    // Raises NotUnsigned for a number that is missing or none, what hexToBinary raises for the body, and what
    // RepeatInfo::fromItem raises. Without a rule the properties behind it are not looked at.
    NotesDatebookRecord(const NotesItem& item, const TimeZone& timeZone);

    // Sends the whole meeting. Raises BeforeUtcStart, NotWholeMinutes, IntegerTruncated, IntegerSignLost.
    void addTo(NotesItem& item, const TimeZone& timeZone) const override;
    std::string description() const override { return subject; }

    CountedPtr<RepeatInfo> repeat; // never null
    std::string subject;
    std::string body;
    bool allDay = false;
    Date date;
    TimeOfDay time;
    TimeInterval duration;
    bool hasAlarm = false;
    TimeInterval alarmLead;
    std::set<Date> deletions;
    std::set<Date> instances;
    bool isPrivate = false;
    std::string chair;                      // not used further
    std::vector<std::string> invitees;      // nothing fills it
    std::set<DatebookException> exceptions; // of two on the same day the first stays

private:
    void readStart(const NotesItem& item, const TimeZone& timeZone);
    void readAlarm(const NotesItem& item);
    void readPattern(const NotesItem& item);
    void readExceptions(const NotesItem& item);
    void addDurationTo(NotesItem& item) const;
    void addAlarmTo(NotesItem& item) const;
    void addDeletionsTo(NotesItem& item) const;
};

} // namespace tsr
