#include "records/PalmAddressRecord.h"

#include "foundation/GeneralError.h"
#include "foundation/lines.h"
#include "records/deviceCategory.h"

namespace tsr {

namespace {

// Offsets from the start of the record.
constexpr std::size_t fieldMaskOffset = 4;
constexpr std::size_t companyOffsetOffset = 8;

constexpr std::uint32_t companyBit = 1u << 2;
constexpr std::uint32_t titleBit = 1u << 13;

// The texts that need no more than to be read and written, in the order of their bits.
struct Field {
    std::uint32_t bit;
    std::string PalmAddressRecord::*text;
};
using Record = PalmAddressRecord;
constexpr Field names[] = {{1u << 0, &Record::lastName}, {1u << 1, &Record::firstName}};
constexpr Field places[] = {{1u << 8, &Record::address},
                            {1u << 9, &Record::city},
                            {1u << 10, &Record::state},
                            {1u << 11, &Record::zip},
                            {1u << 12, &Record::country}};
constexpr Field others[] = {{1u << 14, &Record::custom1},
                            {1u << 15, &Record::custom2},
                            {1u << 16, &Record::custom3},
                            {1u << 17, &Record::custom4},
                            {1u << 18, &Record::note}};

template <std::size_t Count>
void readTexts(PalmRecordBuffer& buffer, std::uint32_t mask, Record& record, const Field (&fields)[Count]) {
    for (const Field& field : fields) {
        if ((mask & field.bit) != 0) record.*field.text = buffer.readString();
    }
}

void appendText(PalmRecordBuffer& buffer, std::uint32_t& mask, std::uint32_t bit, const std::string& text) {
    if (text.empty()) return;
    buffer.appendString(text);
    mask |= bit;
}

template <std::size_t Count>
void appendTexts(PalmRecordBuffer& buffer, std::uint32_t& mask, const Record& record,
                 const Field (&fields)[Count]) {
    for (const Field& field : fields) appendText(buffer, mask, field.bit, record.*field.text);
}

} // namespace

PalmAddressRecord::PalmAddressRecord(PalmRecordBuffer& buffer, bool archived)
    : PalmApplicationRecord(buffer, archived) {
    const std::uint32_t phoneFlags = buffer.readDword();
    const std::uint32_t mask = buffer.readDword();
    buffer.readByte(); // where the company begins: told by the mask as well
    readTexts(buffer, mask, *this, names);
    if ((mask & companyBit) != 0) company = buffer.readString();
    readPhones(buffer, phoneFlags, mask);
    readTexts(buffer, mask, *this, places);
    if ((mask & titleBit) != 0) title = splitLines(buffer.readString());
    readTexts(buffer, mask, *this, others);
    category_ = static_cast<std::uint32_t>(buffer.categoryId());
    if (!buffer.atEnd()) throw GeneralError(Message::ExcessData);
}

void PalmAddressRecord::setCategory(std::uint32_t index) { category_ = checkedCategory(index); }

std::uint16_t PalmAddressRecord::write(PalmRecordBuffer& buffer) const {
    const std::size_t start = buffer.size();
    const std::size_t companyOffset = start + companyOffsetOffset;
    std::uint32_t mask = 0;
    buffer.appendDword(0); // phone flags and field mask are known only at the end
    buffer.appendDword(0);
    buffer.appendByte(0);
    appendTexts(buffer, mask, *this, names);
    if (!company.empty())
        buffer.putByte(static_cast<std::uint8_t>(buffer.size() - companyOffset), companyOffset);
    appendText(buffer, mask, companyBit, company);
    const std::uint32_t phoneFlags = writePhones(buffer, mask);
    appendTexts(buffer, mask, *this, places);
    appendText(buffer, mask, titleBit, joinLines(title));
    appendTexts(buffer, mask, *this, others);
    buffer.putDword(phoneFlags, start);
    buffer.putDword(mask, start + fieldMaskOffset);
    buffer.setCategoryId(static_cast<std::int16_t>(category_));
    return buffer.crc(start);
}

} // namespace tsr
