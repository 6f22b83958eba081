#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace tsr {

inline constexpr std::uint32_t vellumCreator = 0x54535241; // "TSRA"

// One of the applications that replicate records, and the category of its record in the configuration.
struct KnownApplication {
    const char* name; // on our command line
    const char* database;
    std::uint32_t creator; // the type is "DATA"
    std::uint8_t configurationCategory;
};

inline constexpr std::array<KnownApplication, 5> knownApplications = {{
    {"address", "AddressDB", 0x61646472, 2},
    {"datebook", "DatebookDB", 0x64617465, 4},
    {"mail", "MailDB", 0x6D61696C, 3},
    {"memo", "MemoDB", 0x6D656D6F, 7},
    {"todo", "ToDoDB", 0x746F646F, 5},
}};

// The application that the command line calls so, or whose database has this name; null for any other.
inline const KnownApplication* findApplication(const std::string& name) {
    for (const KnownApplication& application : knownApplications) {
        if (name == application.name || name == application.database) return &application;
    }
    return nullptr;
}

} // namespace tsr
