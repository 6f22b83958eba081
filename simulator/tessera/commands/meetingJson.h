#pragma once

#include <nlohmann/json.hpp>

#include "tessera/Meeting.h"

namespace tsr {

// Meetings in JSON, as docs/tessera.md has them; the start is told by the caller in the form that he wants.
// What repeats stands on the clock of its owner.
nlohmann::ordered_json meetingJson(const Meeting& meeting, const std::string& start);

// Raises TesseraError, ArgumentError and an exception of the JSON library.
Meeting meetingFromJson(const nlohmann::ordered_json& json, const ZoneRule& zone);

} // namespace tsr
