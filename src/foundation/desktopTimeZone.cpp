#include "foundation/desktopTimeZone.h"

#include "foundation/zoneInformation.h"

namespace tsr {

TimeZone desktopTimeZone() { return toTimeZone(platform::readZone()); }

} // namespace tsr
