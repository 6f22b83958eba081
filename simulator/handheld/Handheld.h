#pragma once

#include <compare>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "handheld/HandheldDatabase.h"

namespace tsr {

// "memo" as 0x6D656D6F; only the first four characters count.
std::uint32_t fourCharacterCode(const std::string& text);

struct VersionNumber {
    std::uint16_t major = 0;
    std::uint16_t minor = 0;

    bool operator==(const VersionNumber&) const = default;
};

struct PreferenceKey {
    std::uint32_t creator = 0;
    std::uint16_t id = 0;
    bool backedUp = true;

    auto operator<=>(const PreferenceKey&) const = default;
};

struct Preference {
    std::uint16_t version = 0;
    std::vector<std::uint8_t> data; // at most 65,535 bytes

    bool operator==(const Preference&) const = default;
};

// A whole handheld in memory: a value that can be copied, compared and thrown away.
struct Handheld {
    VersionNumber systemVersion{4, 1}; // major 0 stands for one that cannot be told
    VersionNumber apiVersion{2, 3};    // of the Sync Manager that talks to it
    std::optional<std::uint32_t> clock =
        0; // seconds since 1970; stands still. Empty: the clock of this machine
    std::string userName;
    std::map<std::string, HandheldDatabase> databases; // by name
    std::map<PreferenceKey, Preference> preferences;

    HandheldDatabase* find(const std::string& name); // null when there is none
    const HandheldDatabase* find(const std::string& name) const;

    // A new empty database on this handheld; one of that name must not be there. Raises std::invalid_argument
    // for a name that is empty or too long.
    HandheldDatabase& create(const std::string& name, std::uint32_t type, std::uint32_t creator,
                             std::uint16_t attributes = 0, std::uint16_t version = 0);

    std::uint32_t now() const; // seconds since 1970

    bool operator==(const Handheld&) const = default;
};

} // namespace tsr
