#include "platform/clock.h"

#include <windows.h>

namespace tsr::platform {

namespace {

constexpr std::int64_t unitsPerSecond = 10000000; // of 100 ns

bool fileTime(const SYSTEMTIME& time, std::int64_t& units) {
    FILETIME file{};
    if (!SystemTimeToFileTime(&time, &file)) return false;
    units = static_cast<std::int64_t>(std::uint64_t{file.dwHighDateTime} << 32 | file.dwLowDateTime);
    return true;
}

} // namespace

bool readClock(std::int64_t& secondsSince1970) {
    SYSTEMTIME now{};
    GetSystemTime(&now);
    SYSTEMTIME epoch{};
    epoch.wYear = 1970;
    epoch.wMonth = 1;
    epoch.wDay = 1;
    std::int64_t nowUnits = 0;
    std::int64_t epochUnits = 0;
    if (!fileTime(now, nowUnits) || !fileTime(epoch, epochUnits)) return false;
    secondsSince1970 = (nowUnits - epochUnits) / unitsPerSecond;
    return true;
}

} // namespace tsr::platform
