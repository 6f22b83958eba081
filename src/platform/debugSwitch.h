#pragma once

namespace tsr::platform {

// Whether the user asks for a debug log at this moment.
bool debugLogSelected();

} // namespace tsr::platform
