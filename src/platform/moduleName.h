#pragma once

namespace tsr {

// The file name by which the library finds itself, its directory and its version record.
inline constexpr char moduleName[] = "TsrConduit.dll";

} // namespace tsr
