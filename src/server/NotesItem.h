#pragma once

#include <map>
#include <string>
#include <vector>

namespace tsr {

// An item as it crosses the wire: from property name, in plain byte order, to the values in the order that
// they came.
using NotesItem = std::map<std::string, std::vector<std::string>>;

// The first value of a property; empty when the property is absent or has no value.
std::string firstValue(const NotesItem& item, const std::string& name);

// The same with its line ends normalized to LF.
std::string normalizedValue(const NotesItem& item, const std::string& name);

bool hasProperty(const NotesItem& item, const std::string& name); // true also for one without values

void addValue(NotesItem& item, const std::string& name, const std::string& value); // appends

} // namespace tsr
