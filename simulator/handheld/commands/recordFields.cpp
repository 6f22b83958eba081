#include "handheld/commands/recordFields.h"

#include "handheld/HandheldError.h"
#include "handheld/commands/CommandLine.h"
#include "handheld/commands/DataOptions.h"
#include "handheld/commands/handheldText.h"

namespace tsr {

void setFields(const RecordForm& form, const std::vector<std::string>& fields, FieldValues& values) {
    for (const std::string& field : fields) {
        const std::size_t sign = field.find('=');
        if (sign == std::string::npos) throw UsageError(field + ": a field is given as NAME=VALUE");
        const std::string name = field.substr(0, sign);
        const std::string value = toHandheldText(field.substr(sign + 1));
        form.checkNames({{name, value}});
        if (value.empty())
            values.erase(name);
        else
            values[name] = value;
    }
}

std::vector<std::uint8_t> formedRecord(const RecordForm& form, const FieldValues& values) {
    std::vector<std::uint8_t> data = form.write(values);
    if (data.size() > HandheldRecord::maxBytes) throw UsageError("a record takes at most 65,535 bytes");
    return data;
}

const HandheldRecord& liveRecord(const HandheldDatabase& database, const std::string& id) {
    const HandheldRecord* const record = database.records().find(parseRecordId(id));
    if (record == nullptr || record->isGone()) throw HandheldError("no such record: " + id);
    return *record;
}

} // namespace tsr
