#pragma once

#include <set>
#include <string>

#include "foundation/Date.h"
#include "records/DatebookExceptionDiff.h"
#include "records/NotesApplicationRecord.h"
#include "records/PalmRecordGroup.h"

namespace tsr {

// What happened to a meeting on the device while its master stayed as it was. Sent in the place of the
// meeting, it leaves alone what Notes alone knows of it.
//
//   property                      value
//   "#Differences"                "1"
//   "Exception.0.Kill"            "Yes": the whole meeting is gone
//   "DeletionCount"               instances that were deleted, 0 too
//   "Deletion.%d.OriginalDate"    from 0: the day of one, minutes since 1601, UTC
//   "ExceptionCount"              instances that were changed, 0 too; once, and once more for each of them
//   "Exception.%d.PatternDate"    from 0, where those of a meeting that arrives begin with 1: the day of the
//                                 pattern, minutes since 1601, UTC
//   "Exception.%d.Subject", ".Body", ".AllDay" ("1" or "0")
//   "Exception.%d.Date"           where it is now: minutes since 1601, a moment
//   "Exception.%d.Duration"       minutes; "1" for one of whole days
class NotesDatebookRecordDiffs : public NotesApplicationRecord {
public:
    NotesDatebookRecordDiffs() = default;

    void setKill() { kill_ = true; }
    void addDeletion(const Date& date) { deletions_.insert(date); }
    // The first of a day stays.
    void addException(const DatebookExceptionDiff& exception) { exceptions_.insert(exception); }

    // Raises BeforeUtcStart, NotWholeMinutes, IntegerTruncated, IntegerSignLost.
    void addTo(NotesItem& item, const TimeZone& timeZone) const override;
    std::string description() const override; // the first exception's subject, or "< Unknown >"

private:
    void addDeletionsTo(NotesItem& item) const;
    void addExceptionsTo(NotesItem& item, const TimeZone& timeZone) const;

    bool kill_ = false;
    std::set<Date> deletions_;
    std::set<DatebookExceptionDiff> exceptions_;
};

// What the members of a group say: each stands for a change, a null one for a deleted record. The master's
// place means that the whole meeting is gone, whatever it holds. Raises BadPalmRecord.
CountedPtr<NotesDatebookRecordDiffs> toNotesDifferences(const PalmRecordGroup& group);

} // namespace tsr
