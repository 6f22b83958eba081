#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tessera/ResultCode.h"

namespace tsr {

// The answer to one request; texts are UTF-8 without NUL. A message stands only with a result other than
// Success.
struct Response {
    std::uint32_t code = 0; // of the request
    ResultCode result = ResultCode::Success;
    std::string message;
    std::vector<std::string> strings;
};

} // namespace tsr
