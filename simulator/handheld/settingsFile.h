#pragma once

#include <string>

#include "handheld/Handheld.h"

namespace tsr {

// handheld.json: the values of a handheld that are in no database.
std::string settingsText(const Handheld& handheld);
void readSettings(const std::string& text, Handheld& handheld); // raises HandheldError

VersionNumber parseVersion(const std::string& text); // "4.1"; raises HandheldError
std::string versionText(VersionNumber version);

} // namespace tsr
