#pragma once

#include <cstdint>
#include <string>

#include "foundation/Date.h"
#include "records/PalmApplicationRecord.h"

namespace tsr {

// One ToDo record of the handheld. The secret attribute is the private flag.
//
//   offset  size   field
//   0       2      due date, see foundation/deviceDate.h; FF FF for none
//   2       1      bit 7 completed, bits 6 to 0 priority
//   3       n + 1  description, ends with a NUL
//   4 + n   m + 1  note, ends with a NUL; the record ends there too
class PalmToDoRecord : public PalmApplicationRecord {
public:
    PalmToDoRecord() : PalmApplicationRecord(false) {}

    // Parses the whole of `buffer`. Raises IntegerUnderrun, InvalidDate, DateTooEarly, MissingNul, or
    // ExcessData for bytes after the note.
    PalmToDoRecord(PalmRecordBuffer& buffer, bool archived);

    bool hasDueDate() const { return hasDueDate_; }
    const Date& dueDate() const { return dueDate_; } // 1970-01-01 where there is none
    bool completed() const { return completed_; }
    std::int32_t priority() const { return priority_; }
    bool isPrivate() const { return isPrivate_; }
    const std::string& note() const { return note_; }

    void setDueDate(const Date& date);
    void setCompleted(bool completed) { completed_ = completed; }
    void setPriority(std::int32_t priority) { priority_ = priority; }
    void setPrivate(bool isPrivate) { isPrivate_ = isPrivate; }
    void setDescription(std::string description) { description_ = std::move(description); }
    void setNote(std::string note) { note_ = std::move(note); }
    void setCategory(std::uint32_t index); // raises InvalidCategory above 15

    std::uint8_t category() const override { return category_; }
    std::string description() const override { return description_; }
    std::uint16_t write(PalmRecordBuffer& buffer) const override;

private:
    bool hasDueDate_ = false;
    Date dueDate_;
    bool completed_ = false;
    std::int32_t priority_ = 1;
    bool isPrivate_ = false;
    std::string description_;
    std::string note_;
    std::uint8_t category_ = 0;
};

} // namespace tsr
