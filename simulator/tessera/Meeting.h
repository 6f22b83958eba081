#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "tessera/Document.h"
#include "tessera/Span.h"
#include "tessera/ZoneRule.h"
#include "tessera/meetingPattern.h"

namespace tsr {

// A calendar entry, kept as a document of the kind "calendar" with the properties of the Date Book, in the
// form in which a handheld is given them:
//
//   0037001F  subject
//   00170041  note, two hexadecimal digits a character, of which there are 256
//   420D0040  start in seconds since 1993
//   42130003  length in minutes
//   42150003  "1" for a meeting that takes whole days
//   45030002  "1" when there is an alarm, 45010003 minutes before the start
//   00040002  "0" unless it is private
//   Recurs    and those that go with it, as meetingPattern.h has them
struct Meeting {
    std::string subject;
    std::int64_t start = 0; // UTC, seconds since 1970
    std::uint32_t minutes = 60;
    bool allDay = false;
    std::string note{};
    std::optional<std::uint32_t> alarm{}; // minutes before the start
    bool isPrivate = false;
    std::optional<MeetingPattern> pattern{}; // starts when the meeting does
};

inline constexpr char meetingKind[] = "calendar";
inline constexpr std::uint32_t minutesPerDay = 1440;

// Empty for a document without a start or a length.
std::optional<Meeting> toMeeting(const Document& document);
std::optional<Meeting> toMeeting(const Properties& properties);

// The properties of a new document. Raises TesseraError for a start that 32 bits of seconds since 1993 can't
// hold, and for a note with characters that a handheld doesn't have.
Properties toProperties(const Meeting& meeting);

// Sets the properties that a Meeting knows and leaves the others; raises as toProperties.
void setMeeting(Properties& properties, const Meeting& meeting);

// Moves the meeting, and with it the first day of its pattern, to a time on the clock of its owner.
void setLocalStart(Meeting& meeting, std::int64_t localStart, const ZoneRule& zone);

// The document that `sent`, a whole version of the handheld, makes of `kept`, the one that it was given; of
// an empty document for a new one. The handheld speaks for the properties above alone. It sends every meeting
// of whole days as one of a minute, which becomes a day here, and 00040002 only for a private one. Raises
// RequestRefused when it makes no meeting.
Properties adoptMeeting(const Properties& kept, const Properties& sent);

// The time that the meeting takes in the calendar of somebody in `zone`, where its whole days begin at
// midnight. Of one that repeats it is the first day.
Span busySpan(const Meeting& meeting, const ZoneRule& zone);

} // namespace tsr
