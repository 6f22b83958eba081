#pragma once

#include <bitset>
#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

#include "handheld/Handheld.h"

namespace tsr {

// One week of a colleague's free time, in quarter hours from Monday 00:00 on.
struct FreeWeek {
    static constexpr std::size_t slotsInDay = 96;
    static constexpr std::size_t slots = 7 * slotsInDay;

    std::chrono::sys_days start; // a Monday
    std::bitset<slots> free;
};

struct Colleague {
    std::uint32_t id = 0;        // of the record that names the person
    std::string name;            // empty when only weeks are left of it
    std::vector<FreeWeek> weeks; // by date
};

// The database "VellumFreetime" of the free-time application. Its bytes are described in docs/handheld.md.
class FreeTimeDatabase {
public:
    static constexpr const char* databaseName = "VellumFreetime";
    static constexpr std::uint32_t type = 0x46524545; // "FREE"
    static constexpr std::uint16_t defaultSearchLength = 14;

    // Makes the database with its search configuration if it is not there.
    static void create(Handheld& handheld);

    explicit FreeTimeDatabase(Handheld& handheld); // raises HandheldError when the database is not there

    // All raise HandheldError, for a damaged record or as told.
    std::vector<Colleague> colleagues() const; // by id
    void add(const std::string& name);         // one that is there already is refused
    void remove(const std::string& name);      // one that is not there is refused
    void setSearchLength(std::uint16_t length);

private:
    HandheldDatabase& database_;
};

} // namespace tsr
