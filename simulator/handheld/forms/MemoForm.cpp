#include "handheld/forms/MemoForm.h"

#include "handheld/RecordReader.h"
#include "handheld/RecordWriter.h"
#include "handheld/forms/fieldText.h"

namespace tsr {

std::vector<std::string> MemoForm::fields() const { return {"text"}; }

FieldValues MemoForm::read(const std::vector<std::uint8_t>& record) const {
    FieldValues values;
    setField(values, "text", RecordReader(record).string());
    return values;
}

std::vector<std::uint8_t> MemoForm::write(const FieldValues& values) const {
    return RecordWriter().string(fieldValue(values, "text")).take();
}

} // namespace tsr
