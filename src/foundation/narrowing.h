#pragma once

#include <cstdint>

namespace tsr {

// Checked conversions to a narrower type. They raise IntegerSignLost for a negative value where the target
// has none, and IntegerTruncated for one that doesn't fit.
std::int32_t narrowToInt(std::int64_t value);
std::int32_t narrowNonNegative(std::int64_t value);
std::uint64_t narrowToUnsignedWide(std::int64_t value);
std::uint32_t narrowToUnsigned(std::uint64_t value);

} // namespace tsr
