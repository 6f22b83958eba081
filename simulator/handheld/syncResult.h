#pragma once

#include <cstdint>

// What the functions of the Sync Manager answer, as far as the simulated one tells failures apart.
namespace tsr::syncResult {

inline constexpr std::int32_t success = 0;
inline constexpr std::int32_t notFound = 0x4003;
inline constexpr std::int32_t readOnly = 0x4009;
inline constexpr std::int32_t notInitialized = 0x400A; // no handheld is attached
inline constexpr std::int32_t alreadyExists = 0x400B;
inline constexpr std::int32_t alreadyOpen = 0x400C;
inline constexpr std::int32_t noneOpen = 0x400D;        // a handle, and no database is open at all
inline constexpr std::int32_t notSupported = 0x400E;    // a resource database
inline constexpr std::int32_t invalidArgument = 0x400F; // a handle that is not one of the open ones
inline constexpr std::int32_t noDesktopMemory = 0x4016;
inline constexpr std::int32_t badParameter = 0x4017; // null, without a NUL, out of range or too large
inline constexpr std::int32_t storeFull = 0x4014;
inline constexpr std::int32_t systemError = 0x4015; // the folder behind the handheld could not be written
inline constexpr std::int32_t tooManyOpen = 0x10004403;
inline constexpr std::int32_t connectionLost = 0x10006410;

} // namespace tsr::syncResult
