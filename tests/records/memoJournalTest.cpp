#include "records/memoJournal.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

TEST(MemoJournal, SplitsAMemo) {
    const struct {
        const char* text;
        const char* subject;
        const char* body;
    } rows[] = {
        {"Subject: Lunch\nBring food", "Lunch", "Bring food"},
        {"Subject: ", "Untitled", ""},
        {"Subject: \nBring food", "Untitled", "Bring food"},
        {"Subject: Lunch", "Lunch", ""},
        {"Subject: Lunch\n", "Lunch", ""},
        {"Subject: Lunch\n\n\nx", "Lunch", "\n\nx"},
        {"Shopping\nMilk", "Shopping", "Shopping\nMilk"}, // made on the device: nothing is taken away
        {"Shopping", "Shopping", "Shopping"},
        {"\n\nShopping\nMilk", "Shopping", "\n\nShopping\nMilk"},
        {"", "Untitled", ""},
        {"\n\n", "Untitled", "\n\n"},
        {"subject: X", "subject: X", "subject: X"}, // the marker is exact
        {"Subject:X", "Subject:X", "Subject:X"},
        {" Subject: X", " Subject: X", " Subject: X"},
        {"a\nSubject: X", "a", "a\nSubject: X"},
        {"Subject: Subject: X\nY", "Subject: X", "Y"},
        // Deliberate: the line's 10 characters and one more are counted from the very beginning.
        {"\n\nSubject: X\nY", "X", "X\nY"},
        {"\nSubject: X", "X", ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        PalmMemoRecord memo;
        memo.setText(row.text);
        NotesJournalRecord journal;
        setJournalText(journal, memo);
        EXPECT_EQ(journal.subject, row.subject);
        EXPECT_EQ(journal.body, row.body);
    }
}

TEST(MemoJournal, PutsTheSubjectBehindItsMarker) {
    const struct {
        const char* subject;
        const char* body;
        const char* text;
    } rows[] = {
        {"Lunch", "Bring food", "Subject: Lunch\nBring food"},
        {"Lunch", "", "Subject: Lunch\n"},
        {"", "", "Subject: \n"}, // an empty subject has one too
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        NotesJournalRecord journal;
        journal.subject = row.subject;
        journal.body = row.body;
        PalmMemoRecord memo;
        setMemoText(memo, journal);
        EXPECT_EQ(memo.text(), row.text);
        NotesJournalRecord back;
        setJournalText(back, memo);
        EXPECT_EQ(back.subject, journal.subject.empty() ? "Untitled" : journal.subject);
        EXPECT_EQ(back.body, journal.body);
    }
}

TEST(MemoJournal, BringsABodyFromNotesWithLineFeedsAlone) {
    const NotesJournalRecord journal({{"Subject", {"Lunch"}}, {"Body", {"a\r\nb"}}}, TimeZone());
    PalmMemoRecord memo;
    setMemoText(memo, journal);
    EXPECT_EQ(memo.text(), "Subject: Lunch\na\nb");
}

} // namespace
} // namespace tsr
