#pragma once

#include "foundation/TimeZone.h"

namespace tsr {

// The time zone that this machine is set to. Raises TimeZoneHasYears or InvalidTransition for one whose
// transitions can't be expressed.
TimeZone desktopTimeZone();

} // namespace tsr
