#pragma once

#include <cstdint>

#include "foundation/GeneralError.h"

namespace tsr {

// For the setters of records: `index`, if it is one of the sixteen categories that a database of the handheld
// has. Raises InvalidCategory.
inline std::uint32_t checkedCategory(std::uint32_t index) {
    if (index > 15) throw GeneralError(Message::InvalidCategory) << Tag('c') << index;
    return index;
}

} // namespace tsr
