#pragma once

#include "records/NotesJournalRecord.h"
#include "records/PalmMemoRecord.h"

namespace tsr {

// Between the text of a memo, and the subject and body of a journal entry. Categories are left alone.
//
// A subject that comes from Notes stands in the memo's first line behind "Subject: ", and by that is found
// again on the way back.
void setMemoText(PalmMemoRecord& memo, const NotesJournalRecord& journal);

// A memo without the marker was made on the device: it keeps its whole text as the body, and its first line
// that isn't empty becomes the subject as well. A memo without a subject is "Untitled".
void setJournalText(NotesJournalRecord& journal, const PalmMemoRecord& memo);

} // namespace tsr
