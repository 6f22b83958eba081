#include "foundation/logTime.h"

#include <sstream>

#include "foundation/DateTime.h"
#include "foundation/Error.h"
#include "foundation/desktopTimeZone.h"
#include "foundation/utcNow.h"

namespace tsr {

TimeZone zoneOfLogs() {
    // An error that is raised while the zone is read builds a stream of its own, and so comes here again.
    thread_local bool reading = false;
    if (reading) return TimeZone();
    reading = true;
    TimeZone zone;
    try {
        zone = desktopTimeZone();
    } catch (...) { // whatever it is, a log line in UTC is better than none
        zone = TimeZone();
    }
    reading = false;
    return zone;
}

std::string timeOfDayText(const TimeZone& zone) {
    try {
        std::ostringstream text;
        text << DateTime(utcNow(), zone).timeOfDay();
        return text.str();
    } catch (const Error&) {
        return {};
    }
}

} // namespace tsr
