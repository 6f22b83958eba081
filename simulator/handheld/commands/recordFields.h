#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "handheld/HandheldDatabase.h"
#include "handheld/forms/RecordForm.h"

namespace tsr {

// Sets the fields that the user gave, "NAME=VALUE" each, in `values`. One without a value is taken away.
// Raises FieldError, UsageError.
void setFields(const RecordForm& form, const std::vector<std::string>& fields, FieldValues& values);

// A record of those values. Raises FieldError, and UsageError for one that is too long.
std::vector<std::uint8_t> formedRecord(const RecordForm& form, const FieldValues& values);

// The record of an id as the user types it. Raises HandheldError when there is none, or no longer.
const HandheldRecord& liveRecord(const HandheldDatabase& database, const std::string& id);

} // namespace tsr
