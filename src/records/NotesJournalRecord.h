#pragma once

#include <string>
#include <vector>

#include "records/NotesApplicationRecord.h"

namespace tsr {

// One entry of the Notes journal.
//
//   property        value
//   "#Differences"  "0": the whole entry; sent only
//   "Subject"       one line
//   "Body"          text; on arrival every line end becomes LF
//   "Category"      one value for each category
class NotesJournalRecord : public NotesApplicationRecord {
public:
    NotesJournalRecord() = default;
    NotesJournalRecord(const NotesItem& item, const TimeZone& timeZone); // what is missing stays empty

    void addTo(NotesItem& item, const TimeZone& timeZone) const override;
    std::string description() const override { return subject; }

    std::string body;
    std::string subject;
    std::vector<std::string> categories;
};

} // namespace tsr
