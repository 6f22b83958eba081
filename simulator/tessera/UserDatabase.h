#pragma once

#include <cstdint>
#include <string>

namespace tsr {

inline constexpr char mailDatabaseKind[] = "mail";

// A database of one user: his mail file, which holds his calendar too, or his journal.
struct UserDatabase {
    std::int64_t id = 0; // in the store
    std::string dbid;    // 16 hexadecimal digits
    std::string title;
};

} // namespace tsr
