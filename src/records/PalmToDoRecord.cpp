#include "records/PalmToDoRecord.h"

#include "foundation/GeneralError.h"
#include "foundation/deviceDate.h"
#include "records/deviceCategory.h"

namespace tsr {

namespace {

constexpr std::uint16_t noDueDate = 0xFFFF;
constexpr std::uint8_t completedBit = 0x80;
constexpr std::uint8_t priorityBits = 0x7F;
constexpr std::uint8_t secretAttribute = 0x10;

} // namespace

PalmToDoRecord::PalmToDoRecord(PalmRecordBuffer& buffer, bool archived)
    : PalmApplicationRecord(buffer, archived) {
    const std::uint16_t date = buffer.readWord();
    if (date != noDueDate) setDueDate(unpackDate(date));
    const std::uint8_t state = buffer.readByte();
    completed_ = (state & completedBit) != 0;
    priority_ = state & priorityBits;
    description_ = buffer.readString();
    note_ = buffer.readString();
    isPrivate_ = (buffer.attributes() & secretAttribute) != 0;
    category_ = static_cast<std::uint8_t>(buffer.categoryId());
    if (!buffer.atEnd()) throw GeneralError(Message::ExcessData);
}

void PalmToDoRecord::setDueDate(const Date& date) {
    dueDate_ = date;
    hasDueDate_ = true;
}

void PalmToDoRecord::setCategory(std::uint32_t index) {
    category_ = static_cast<std::uint8_t>(checkedCategory(index));
}

std::uint16_t PalmToDoRecord::write(PalmRecordBuffer& buffer) const {
    const std::size_t start = buffer.size();
    buffer.appendWord(hasDueDate_ ? packDate(dueDate_) : noDueDate);
    const auto priority = static_cast<std::uint8_t>(priority_);
    buffer.appendByte(completed_ ? static_cast<std::uint8_t>(priority | completedBit) : priority);
    buffer.appendString(description_);
    buffer.appendString(note_);
    buffer.setCategoryId(category_);
    if (isPrivate_) buffer.setAttributes(buffer.attributes() | secretAttribute);
    return buffer.crc(start);
}

} // namespace tsr
