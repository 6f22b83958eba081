#include "handheld/forms/ToDoForm.h"

#include "handheld/RecordReader.h"
#include "handheld/RecordWriter.h"
#include "handheld/forms/fieldText.h"

namespace tsr {

namespace {

constexpr std::uint32_t noDate = 0xFFFF;
constexpr std::uint8_t completedBit = 0x80;

} // namespace

std::vector<std::string> ToDoForm::fields() const {
    return {"description", "due", "priority", "completed", "note"};
}

FieldValues ToDoForm::read(const std::vector<std::uint8_t>& record) const {
    RecordReader reader(record);
    FieldValues values;
    const std::uint32_t due = reader.number(2);
    if (due != noDate) values["due"] = packedDateText(due);
    const std::uint32_t state = reader.number(1);
    values["priority"] = std::to_string(state & ~std::uint32_t{completedBit});
    if ((state & completedBit) != 0) values["completed"] = "yes";
    setField(values, "description", reader.string());
    setField(values, "note", reader.string());
    return values;
}

std::vector<std::uint8_t> ToDoForm::write(const FieldValues& values) const {
    const std::string due = fieldValue(values, "due");
    const std::string priority = fieldValue(values, "priority");
    std::uint32_t state = priority.empty() ? 1 : parseNumberField("priority", priority, 127);
    if (parseFlagField("completed", fieldValue(values, "completed"))) state |= completedBit;
    RecordWriter record;
    record.number(2, due.empty() ? noDate : parseDateField("due", due)).number(1, state);
    return record.string(fieldValue(values, "description")).string(fieldValue(values, "note")).take();
}

} // namespace tsr
