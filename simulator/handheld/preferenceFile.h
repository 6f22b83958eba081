#pragma once

#include <string>
#include <utility>
#include <vector>

#include "handheld/Handheld.h"

namespace tsr {

// A preference in the folder preferences/: named for its creator, number and kind, as "mail-1-saved" or
// "mail-3-unsaved", and filled with its version (2 bytes, big-endian) and its data.
std::string preferenceFileName(const PreferenceKey& key);
std::vector<std::uint8_t> preferenceFile(const Preference& preference);

// Raises HandheldError for a name that is none of ours, or for a content without a version or above 65,535
// bytes.
std::pair<PreferenceKey, Preference> readPreferenceFile(const std::string& name,
                                                        const std::vector<std::uint8_t>& content);

} // namespace tsr
