#include "replication/MemoItems.h"

#include "records/memoJournal.h"
#include "replication/deviceText.h"
#include "tessera/Memo.h"

namespace tsr::test {

namespace {

std::string randomText(RandomWords& random) {
    switch (random.below(6)) {
    case 0: return "";
    case 1: return random.word() + random.serial();
    case 2: return "Subject: " + random.word() + '\n' + random.word() + random.serial();
    case 3: return "\n\n" + random.word() + random.serial();
    default: return random.linesOfText() + '\n';
    }
}

} // namespace

const char* MemoItems::databaseKind() const { return journalKind; }
const char* MemoItems::documentKind() const { return memoKind; }

std::string MemoItems::line(const HandheldRecord& record) const {
    PalmMemoRecord memo;
    memo.setText(reinterpret_cast<const char*>(record.data.data()));
    NotesJournalRecord journal;
    setJournalText(journal, memo);
    return fromDeviceText(journal.subject + " | " + journal.body);
}

Strings MemoItems::lines(const Properties& document) const {
    return {firstValue(document, "Subject") + " | " + firstValue(document, "Body")};
}

bool MemoItems::mayRepeat(const std::string& line) const { return line == "Untitled | "; }

HandheldRecord MemoItems::randomRecord(RandomWords& random) const {
    const std::string text = toDeviceText(randomText(random));
    HandheldRecord record;
    record.data.assign(text.c_str(), text.c_str() + text.size() + 1);
    return record;
}

HandheldRecord MemoItems::edited(RandomWords& random, const HandheldRecord&) const {
    return randomRecord(random);
}

void MemoItems::rewrite(RandomWords& random, Properties& document) const {
    const std::string subject = random.word();
    const std::string body = random.linesOfText();
    setMemo(document, Memo{subject, body, random.categories()});
}

void MemoItems::touch(RandomWords& random, Properties& document) const {
    document["Body"] = {random.linesOfText()};
}

} // namespace tsr::test
