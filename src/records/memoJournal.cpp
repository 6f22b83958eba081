#include "records/memoJournal.h"

#include <string_view>

#include "foundation/lines.h"

namespace tsr {

namespace {

constexpr std::string_view marker = "Subject: ";
constexpr char noSubject[] = "Untitled";

} // namespace

void setMemoText(PalmMemoRecord& memo, const NotesJournalRecord& journal) {
    memo.setText(std::string(marker) + journal.subject + '\n' + journal.body);
}

void setJournalText(NotesJournalRecord& journal, const PalmMemoRecord& memo) {
    journal.body = memo.text();
    journal.subject = firstLine(memo.text());
    if (journal.subject.starts_with(marker)) {
        journal.subject.erase(0, marker.size());
        removeFirstLine(journal.body);
    }
    if (journal.subject.empty()) journal.subject = noSubject;
}

} // namespace tsr
