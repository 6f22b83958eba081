#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "server/NotesItem.h"

namespace tsr {

// Name to values, in the order in which they cross the wire.
using Properties = NotesItem; // whose firstValue() serves here too

// One document of a database. Its identity is given by the store and never used again; the sequence number
// starts at 1 and is raised by 1 with each change, or by 2 where its low 16 bits would become 0, since
// handhelds keep no more of it and take 0 for none.
struct Document {
    std::string unid; // 32 hexadecimal digits
    std::uint32_t sequence = 0;
    std::string kind; // tells the applications apart that share a database
    Properties properties;
};

// The values of a property that aren't empty.
std::vector<std::string> filledValues(const Properties& properties, const std::string& name);

// Keeps of `values` those that aren't empty; without any, the property goes.
void setFilled(Properties& properties, const std::string& name, std::vector<std::string> values);

} // namespace tsr
