#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "tessera/RequestContext.h"

namespace tsr {

// The handler of one command code; it gives the strings of the response or raises RequestRefused. Each
// application has a list of them.
struct Route {
    std::uint32_t code;
    bool beforeAuthentication; // whether it is served to somebody unknown
    std::function<std::vector<std::string>(const RequestContext& context)> answer;
};

} // namespace tsr
