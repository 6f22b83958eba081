#pragma once

#include <string>

namespace tsr {

// How an item is called on the wire: 16 and 32 hexadecimal digits when they come from the store, and whatever
// a client wrote otherwise.
struct ItemName {
    std::string dbid;
    std::string unid;

    bool operator==(const ItemName&) const = default;
};

} // namespace tsr
