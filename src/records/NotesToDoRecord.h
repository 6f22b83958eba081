#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "foundation/Date.h"
#include "records/NotesApplicationRecord.h"

namespace tsr {

// One task of Notes.
//
//   property        value
//   "#Differences"  "0": the whole task; sent only
//   "0037001F"      subject
//   "00170041"      body: arrives as hexadecimal text, two digits a byte, and is sent as plain text
//   "00260003"      priority in decimal
//   "41050040"      due date, in seconds after 1993-01-01 00:00:00 UTC; "0", empty or absent for none
//   "410F0002"      "1" for completed
//   "00040002"      arrives as "0" unless the task is private; sent as "3", and only for a private one
//   "Category"      one value for each category
//   "Recurs"        not empty for a repeating task; never sent
class NotesToDoRecord : public NotesApplicationRecord {
public:
    NotesToDoRecord() = default;

    // Raises OddHexLength, InvalidHexDigit, NotUnsigned, also for a missing priority, and RepeatingToDo, as
    // the handheld's tasks can't repeat.
    NotesToDoRecord(const NotesItem& item, const TimeZone& timeZone);

    void addTo(NotesItem& item, const TimeZone& timeZone) const override;
    std::string description() const override { return subject; }

    std::string subject;
    std::string body;
    bool hasDueDate = false;
    Date dueDate;
    bool completed = false;
    std::int32_t priority = 2;
    bool isPrivate = false;
    std::vector<std::string> categories;
};

} // namespace tsr
