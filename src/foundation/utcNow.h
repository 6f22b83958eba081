#pragma once

#include "foundation/TimeStamp.h"

namespace tsr {

// The present moment by the system's clock, in whole seconds. Raises Win32Error where the system can't tell.
TimeStamp utcNow();

} // namespace tsr
