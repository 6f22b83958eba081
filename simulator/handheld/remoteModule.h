#pragma once

#include <cstdint>
#include <vector>

#include "handheld/Handheld.h"

namespace tsr {

struct RemoteModuleAnswer {
    std::uint32_t code = 0;           // 0 when the module ran
    std::vector<std::uint8_t> result; // strings, each with its NUL
};

bool isRemoteModule(std::uint32_t creator, std::uint32_t type);

// The application on the handheld that the desktop can call. `parameter` holds five strings, each with its
// NUL: the number of a function, two numbers that it does not use, and the names of an application database
// and its sync database.
//
// Function 6 copies pending records (see CopyPass.h) and answers "0", "0" while there is more to copy, "0",
// "17" when it is done, and "1" with the decimal id of a record of the sync database that it cannot use.
// Requests that it does not understand, or whose databases are not there, get a code other than 0 and no
// result.
RemoteModuleAnswer runRemoteModule(Handheld& handheld, std::uint16_t actionCode,
                                   const std::vector<std::uint8_t>& parameter);

} // namespace tsr
