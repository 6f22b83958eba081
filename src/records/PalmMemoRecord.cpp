#include "records/PalmMemoRecord.h"

#include "foundation/GeneralError.h"
#include "foundation/lines.h"
#include "records/deviceCategory.h"

namespace tsr {

PalmMemoRecord::PalmMemoRecord(PalmRecordBuffer& buffer, bool archived)
    : PalmApplicationRecord(buffer, archived), text_(buffer.readString()),
      category_(static_cast<std::uint32_t>(buffer.categoryId())) {
    if (!buffer.atEnd()) throw GeneralError(Message::ExcessData);
}

void PalmMemoRecord::setCategory(std::uint32_t index) { category_ = checkedCategory(index); }

std::string PalmMemoRecord::description() const { return firstLine(text_); }

std::uint16_t PalmMemoRecord::write(PalmRecordBuffer& buffer) const {
    const std::size_t start = buffer.size();
    buffer.appendString(text_);
    buffer.setCategoryId(static_cast<std::int16_t>(category_));
    return buffer.crc(start);
}

} // namespace tsr
