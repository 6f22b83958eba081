#include "handheld/settingsFile.h"

#include <charconv>
#include <nlohmann/json.hpp>

#include "handheld/HandheldError.h"

namespace tsr {

namespace {

std::uint16_t parseVersionPart(const std::string& text, std::size_t begin, std::size_t end) {
    std::uint16_t value = 0;
    const auto [stop, error] = std::from_chars(text.data() + begin, text.data() + end, value);
    if (error != std::errc() || stop != text.data() + end)
        throw HandheldError("not a version number: " + text);
    return value;
}

} // namespace

std::string settingsText(const Handheld& handheld) {
    nlohmann::ordered_json json;
    json["systemVersion"] = versionText(handheld.systemVersion);
    json["apiVersion"] = versionText(handheld.apiVersion);
    if (handheld.clock)
        json["clock"] = *handheld.clock;
    else
        json["clock"] = "host";
    json["userName"] = handheld.userName;
    return json.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) + "\n";
}

void readSettings(const std::string& text, Handheld& handheld) {
    try {
        const auto json = nlohmann::json::parse(text);
        handheld.systemVersion = parseVersion(json.at("systemVersion").get<std::string>());
        handheld.apiVersion = parseVersion(json.at("apiVersion").get<std::string>());
        const auto& clock = json.at("clock");
        if (clock == "host")
            handheld.clock.reset();
        else if (clock.is_number_unsigned() && clock.get<std::uint64_t>() <= UINT32_MAX)
            handheld.clock = clock;
        else
            throw HandheldError("\"clock\" is neither seconds since 1970 nor \"host\"");
        handheld.userName = json.at("userName").get<std::string>();
    } catch (const nlohmann::json::exception& error) {
        throw HandheldError(error.what());
    }
}

VersionNumber parseVersion(const std::string& text) {
    const std::size_t point = text.find('.');
    if (point == std::string::npos) throw HandheldError("not a version number: " + text);
    return {parseVersionPart(text, 0, point), parseVersionPart(text, point + 1, text.size())};
}

std::string versionText(VersionNumber version) {
    return std::to_string(version.major) + "." + std::to_string(version.minor);
}

} // namespace tsr
