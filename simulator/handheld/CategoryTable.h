#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "handheld/HandheldDatabase.h"

namespace tsr {

// The names of a database's sixteen categories, at the front of its application info block:
//
//   offset  size     field
//   0       2        which names the user has changed: bit 0 for category 0, and so on
//   2       16 x 16  the names, each with a NUL behind it
//   258     16       ids
//   274     2        the last id given away, and a zero
class CategoryTable {
public:
    static constexpr std::size_t longestName = 15; // bytes

    // The block of a database that is new.
    static std::vector<std::uint8_t> newBlock(const std::vector<std::string>& names);

    // `database` outlives the table. Raises HandheldError for one without a block that holds the names.
    explicit CategoryTable(HandheldDatabase& database);

    std::string name(std::uint8_t category) const; // empty for none

    // Category 0 keeps its name. Raises HandheldError for it, for a name that is empty, too long or that of
    // another category.
    void rename(std::uint8_t category, const std::string& name);

    // The category of that name; where there is none, a free one takes the name, and without a free one it is
    // 0. Raises HandheldError as rename does.
    std::uint8_t findOrAdd(const std::string& name);

    // Takes the name away; the records of the category go to category 0, as if the user had moved them.
    void remove(std::uint8_t category);

private:
    void write(std::uint8_t category, const std::string& name);

    HandheldDatabase& database_;
};

} // namespace tsr
