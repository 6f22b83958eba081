#include "foundation/narrowing.h"

#include <limits>

#include "foundation/GeneralError.h"

namespace tsr {

std::int32_t narrowToInt(std::int64_t value) {
    using Limits = std::numeric_limits<std::int32_t>;
    if (value < Limits::min() || value > Limits::max()) throw GeneralError(Message::IntegerTruncated);
    return static_cast<std::int32_t>(value);
}

std::int32_t narrowNonNegative(std::int64_t value) {
    if (value < 0) throw GeneralError(Message::IntegerSignLost);
    return narrowToInt(value);
}

std::uint64_t narrowToUnsignedWide(std::int64_t value) {
    if (value < 0) throw GeneralError(Message::IntegerSignLost);
    return static_cast<std::uint64_t>(value);
}

std::uint32_t narrowToUnsigned(std::uint64_t value) {
    if (value > std::numeric_limits<std::uint32_t>::max()) throw GeneralError(Message::IntegerTruncated);
    return static_cast<std::uint32_t>(value);
}

} // namespace tsr
