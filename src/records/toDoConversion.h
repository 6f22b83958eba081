#pragma once

#include "records/NotesToDoRecord.h"
#include "records/PalmToDoRecord.h"

namespace tsr {

// Between a task of the handheld and one of Notes. Categories are left alone.
//
// Priorities 1, 2 and 3 are the same on both sides. Whatever else Notes has is the handheld's lowest, 5, and
// whatever else the handheld has is 99 in Notes, which stands for none: a 4 comes back as a 5.
PalmToDoRecord toPalmToDoRecord(const NotesToDoRecord& notes);
NotesToDoRecord toNotesToDoRecord(const PalmToDoRecord& palm);

} // namespace tsr
