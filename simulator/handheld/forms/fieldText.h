#pragma once

#include <cstdint>
#include <string>

#include "handheld/forms/RecordForm.h"

namespace tsr {

// The value of a field, empty when it is not there.
std::string fieldValue(const FieldValues& values, const std::string& name);
void setField(FieldValues& values, const std::string& name, const std::string& value); // unless it is empty

// Between the user's texts and a record's numbers; all parsers raise FieldError, which names the field.
std::uint16_t parseDateField(const std::string& name, const std::string& text); // "2002-02-06", packed
std::string packedDateText(std::uint32_t packed);

struct ClockTime {
    std::uint8_t hour;
    std::uint8_t minute;
};
ClockTime parseTimeField(const std::string& name, const std::string& text); // "09:30"
std::string timeText(std::uint32_t hour, std::uint32_t minute);

std::uint32_t parseNumberField(const std::string& name, const std::string& text, std::uint32_t largest);
bool parseFlagField(const std::string& name, const std::string& text); // "yes", or "no" or empty

} // namespace tsr
