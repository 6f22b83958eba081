#pragma once

#include <string>

#include <nlohmann/json.hpp>

#include "tessera/Mail.h"

namespace tsr {

// Messages in the arguments, on the screen and in JSON. All raise ArgumentError.
std::string importanceText(int importance); // "high", "normal", "low"
int parsedImportance(const std::string& text);
std::string parsedFolder(const std::string& text); // of mailDocument.h, in capitals or not

// `date` is its date as it is to be shown.
nlohmann::ordered_json mailJson(const Mail& mail, const std::string& date);

// What isn't there is as in a new message, read, of the Inbox. Raises also exceptions of the JSON library for
// values of another type.
Mail mailFromJson(const nlohmann::ordered_json& json);

} // namespace tsr
