#pragma once

#include "interchange/Task.h"
#include "tessera/Document.h"

namespace tsr {

// A task is kept as a document of the kind "task" in its owner's mail database, with the properties that the
// handheld's ToDo application is given:
//
//   0037001F  subject
//   00170041  note, two hexadecimal digits a character, of which there are 256
//   00260003  priority: 1 high, 2 medium, 3 low, 99 none
//   41050040  due date: midnight UTC, in seconds since 1993; missing without one
//   410F0002  "1" when it is completed
//   00040002  "0" unless it is private
//   Recurs    the rule of one that repeats
//   Category  the names of its categories
inline constexpr char taskKind[] = "task";

Task toTask(const Properties& properties);

// Sets the properties that a Task knows and leaves the others. Raises TesseraError for a note with characters
// that a handheld doesn't have, and for a due date that 32 bits of seconds since 1993 can't hold.
void setTask(Properties& properties, const Task& task);

// The document that `sent`, a version of the handheld, makes of `kept`, the one that it was given; of an
// empty document for a new one. The handheld speaks for the properties above alone, but not for "Recurs". It
// sends the note as it is, and 00040002 only for a private task.
Properties adoptTask(const Properties& kept, const Properties& sent);

} // namespace tsr
