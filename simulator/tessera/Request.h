#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tsr {

// One request as the service sees it: its command code and the strings of its body, in UTF-8.
struct Request {
    std::uint32_t code = 0;
    std::vector<std::string> strings;
};

} // namespace tsr
