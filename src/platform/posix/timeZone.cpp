#include "platform/timeZone.h"

#include <cstdlib>
#include <optional>
#include <string>

#include "platform/posix/zoneFile.h"
#include "platform/posix/zoneRule.h"

namespace tsr::platform {

namespace {

std::string variableOr(const char* name, const char* otherwise) {
    const char* value = std::getenv(name);
    return value == nullptr ? otherwise : value;
}

ZoneInformation zoneOfFile(const std::string& path) {
    const auto rule = zoneFileRule(path);
    return (rule ? parseZoneRule(*rule) : std::nullopt).value_or(ZoneInformation());
}

std::string zoneFilePath(const std::string& name) {
    if (name.starts_with('/')) return name;
    return variableOr("TZDIR", "/usr/share/zoneinfo") + '/' + name;
}

} // namespace

ZoneInformation readZone() {
    const char* variable = std::getenv("TZ");
    if (variable == nullptr) return zoneOfFile("/etc/localtime");
    std::string name = variable;
    if (name.starts_with(':')) name.erase(0, 1);
    // A file first: "EST5EDT" is also a rule, but one that leaves out its transitions.
    if (const auto rule = zoneFileRule(zoneFilePath(name)))
        return parseZoneRule(*rule).value_or(ZoneInformation());
    return parseZoneRule(name).value_or(ZoneInformation());
}

} // namespace tsr::platform
