#include "records/PalmMailRecord.h"

#include "foundation/GeneralError.h"
#include "foundation/deviceDate.h"
#include "records/InfoBlock.h"
#include "records/deviceCategory.h"

namespace tsr {

namespace {

constexpr std::uint16_t noDate = 0;
constexpr char unidKey[] = "UNID";

std::optional<DateTime> readDate(PalmRecordBuffer& buffer) {
    const std::uint16_t date = buffer.readWord();
    const std::uint8_t hour = buffer.readByte();
    const std::uint8_t minute = buffer.readByte();
    if (date == noDate) return std::nullopt;
    return DateTime(unpackDate(date), TimeOfDay(hour, minute, 0));
}

void dropLastByte(PalmRecordBuffer& buffer) {
    if (buffer.atEnd()) return;
    const std::size_t position = buffer.position();
    buffer.readByte();
    buffer.putByte(0, position);
    if (!buffer.atEnd()) throw GeneralError(Message::ExcessData);
}

} // namespace

PalmMailRecord::PalmMailRecord(PalmRecordBuffer& buffer, bool archived) : PalmApplicationRecord(archived) {
    date = readDate(buffer);
    const std::size_t flagsPosition = buffer.position();
    flags_ = buffer.readWord();
    for (std::string* const text : {&subject, &from, &to, &cc, &bcc, &replyTo, &sentTo, &body})
        *text = buffer.readString();
    category_ = static_cast<std::uint8_t>(buffer.categoryId());
    dropLastByte(buffer);
    buffer.putWord(static_cast<std::uint16_t>(flags_ & ~readBit), flagsPosition);
    setCrc(buffer.crc(0));
}

void PalmMailRecord::setPriority(std::uint32_t priority) {
    flags_ = (flags_ & ~(3u << priorityShift)) | (priority & 3) << priorityShift;
}

void PalmMailRecord::setCategory(std::uint32_t index) {
    category_ = static_cast<std::uint8_t>(checkedCategory(index));
}

std::uint16_t PalmMailRecord::write(PalmRecordBuffer& buffer) const {
    const std::size_t start = buffer.size();
    writeDate(buffer);
    const std::size_t flagsPosition = buffer.size();
    buffer.appendWord(static_cast<std::uint16_t>(flags_ & ~readBit));
    for (const std::string* const text : {&subject, &from, &to, &cc, &bcc, &replyTo, &sentTo})
        buffer.appendString(*text);
    buffer.appendString(bodyToWrite());
    buffer.appendByte(0);
    buffer.setCategoryId(category_);
    const std::uint16_t crc = buffer.crc(start);
    buffer.putWord(static_cast<std::uint16_t>(flags_), flagsPosition);
    return crc;
}

void PalmMailRecord::writeDate(PalmRecordBuffer& buffer) const {
    buffer.appendWord(date ? packDate(date->date()) : noDate);
    buffer.appendByte(static_cast<std::uint8_t>(date ? date->timeOfDay().hour() : 0));
    buffer.appendByte(static_cast<std::uint8_t>(date ? date->timeOfDay().minute() : 0));
}

std::string PalmMailRecord::bodyToWrite() const {
    if (actions.empty()) return body;
    InfoBlock block;
    block.setActions(actions);
    block.addValue(unidKey, unid);
    return block.render(body);
}

} // namespace tsr
