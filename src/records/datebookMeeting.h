#pragma once

#include "records/NotesDatebookRecord.h"
#include "records/PalmDatebookRecord.h"
#include "records/PalmRecordGroup.h"

namespace tsr {

// Between a meeting of Notes and the records that stand for it on the device: the master under tag 0, and one
// record under the tag of its day for each changed instance and for each further day of an all-day event.

// The most days that one meeting may be spread over: as many as a database holds records. A day of several
// instances counts once, one that a changed instance has too counts again.
inline constexpr std::size_t mostMeetingDays = 65535;

// The tag of a record that is not the master. Raises IntegerSignLost before 1970.
std::uint32_t datebookTag(const Date& date);

// The member as a Date Book record. Raises BadPalmRecord for another class, and for null.
const PalmDatebookRecord& datebookMember(const PalmRecordGroup::Member& member);

// One record with what the meeting and a record share; no rule, deletions or exceptions.
PalmDatebookRecord toPalmRecord(const NotesDatebookRecord& meeting);

// `spread` tells whether the group has records for further days. Raises NotImplemented for a rule that no
// device record can hold, IntegerTruncated for a meeting of more than mostMeetingDays.
PalmRecordGroup toPalmGroup(const NotesDatebookRecord& meeting, bool& spread);

// The whole meeting, from a group of the master alone. Raises WholeRecordNotSingle for another size,
// TagNotInGroup where it isn't the master, BadPalmRecord.
CountedPtr<NotesDatebookRecord> toNotesMeeting(const PalmRecordGroup& group);

} // namespace tsr
