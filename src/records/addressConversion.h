#pragma once

#include "records/NotesAddressRecord.h"
#include "records/PalmAddressRecord.h"

namespace tsr {

// Between a contact of the handheld and one of Notes. Categories are left alone.
//
// Notes has all eight kinds of phone, the handheld five slots: the kinds in "PalmListed" come first, in its
// order, then the others, as far as there are slots.
PalmAddressRecord toPalmAddressRecord(const NotesAddressRecord& notes);

// The letters of "PalmListed" always come in the same order, and never tell the order of the slots.
NotesAddressRecord toNotesAddressRecord(const PalmAddressRecord& palm);

} // namespace tsr
