#pragma once

#include <string>

namespace tsr {

// A property's name and its value, as they cross the wire in one string: "Subject=Lunch".
struct StringPair {
    std::string name;
    std::string value;

    bool operator==(const StringPair&) const = default;
};

// Divides at the first "="; either half may be empty. Raises InvalidStringPair where there is none.
StringPair splitPair(const std::string& text);

} // namespace tsr
