#include "platform/timeZone.h"

#include <windows.h>

namespace tsr::platform {

namespace {

ZoneTransition toTransition(const SYSTEMTIME& date) {
    ZoneTransition transition;
    transition.year = date.wYear;
    transition.month = date.wMonth;
    transition.dayOfWeek = date.wDayOfWeek;
    transition.instance = date.wDay;
    transition.hour = date.wHour;
    transition.minute = date.wMinute;
    transition.second = date.wSecond;
    return transition;
}

} // namespace

ZoneInformation readZone() {
    TIME_ZONE_INFORMATION system{};
    if (GetTimeZoneInformation(&system) == TIME_ZONE_ID_INVALID) return {};
    ZoneInformation zone;
    zone.bias = system.Bias;
    zone.daylightBias = system.DaylightBias;
    zone.standard = toTransition(system.StandardDate);
    zone.daylight = toTransition(system.DaylightDate);
    return zone;
}

} // namespace tsr::platform
