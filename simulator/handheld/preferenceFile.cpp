#include "handheld/preferenceFile.h"

#include <charconv>

#include "device/fourCharacterCode.h"
#include "handheld/HandheldError.h"
#include "handheld/HandheldRecord.h"
#include "handheld/fileName.h"

namespace tsr {

namespace {

constexpr std::size_t versionBytes = 2;

[[noreturn]] void refuseName(const std::string& name) {
    throw HandheldError(name + " is not the name of a preference, such as mail-1-saved");
}

} // namespace

std::string preferenceFileName(const PreferenceKey& key) {
    return toFileName(fourCharacters(key.creator)) + "-" + std::to_string(key.id)
         + (key.backedUp ? "-saved" : "-unsaved");
}

std::vector<std::uint8_t> preferenceFile(const Preference& preference) {
    std::vector<std::uint8_t> file;
    file.reserve(versionBytes + preference.data.size());
    file.push_back(static_cast<std::uint8_t>(preference.version >> 8));
    file.push_back(static_cast<std::uint8_t>(preference.version));
    file.insert(file.end(), preference.data.begin(), preference.data.end());
    return file;
}

std::pair<PreferenceKey, Preference> readPreferenceFile(const std::string& name,
                                                        const std::vector<std::uint8_t>& content) {
    const std::size_t first = name.find('-');
    const std::size_t second = name.find('-', first + 1);
    if (first == std::string::npos || second == std::string::npos) refuseName(name);
    PreferenceKey key;
    const std::string creator = fromFileName(name.substr(0, first));
    const auto [end, error] = std::from_chars(name.data() + first + 1, name.data() + second, key.id);
    const std::string kind = name.substr(second);
    if (creator.size() != 4 || error != std::errc() || end != name.data() + second) refuseName(name);
    if (kind != "-saved" && kind != "-unsaved") refuseName(name);
    if (content.size() < versionBytes || content.size() > versionBytes + HandheldRecord::maxBytes) {
        throw HandheldError("a preference has a version of 2 bytes and at most 65,535 bytes behind it");
    }
    key.creator = fourCharacterCode(creator);
    key.backedUp = kind == "-saved";
    const auto version = static_cast<std::uint16_t>(content[0] << 8 | content[1]);
    return {key, {version, {content.begin() + versionBytes, content.end()}}};
}

} // namespace tsr
