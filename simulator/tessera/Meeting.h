#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "tessera/Document.h"
#include "tessera/Span.h"
#include "tessera/ZoneRule.h"

namespace tsr {

// A calendar entry, kept as a document of the kind "calendar" with the properties of the Date Book:
//
//   0037001F  subject
//   420D0040  start in seconds since 1993
//   42130003  length in minutes
//   42150003  "1" for a meeting that takes whole days
struct Meeting {
    std::string subject;
    std::int64_t start = 0; // UTC, seconds since 1970
    std::uint32_t minutes = 60;
    bool allDay = false;
};

inline constexpr char meetingKind[] = "calendar";

// Empty for a document without a start or a length.
std::optional<Meeting> toMeeting(const Document& document);

// The properties of a new document. Raises TesseraError for a start that 32 bits of seconds since 1993 can't
// hold.
Properties toProperties(const Meeting& meeting);

// Sets the properties that a Meeting knows and leaves the others; raises as toProperties.
void setMeeting(Properties& properties, const Meeting& meeting);

// The time that the meeting takes in the calendar of somebody in `zone`, where its whole days begin at
// midnight.
Span busySpan(const Meeting& meeting, const ZoneRule& zone);

} // namespace tsr
