#pragma once

#include <cstdint>
#include <string>

namespace tsr {

// A database of one user: his mail file, which holds his calendar too.
struct UserDatabase {
    std::int64_t id = 0; // in the store
    std::string dbid;    // 16 hexadecimal digits
    std::string title;
};

} // namespace tsr
