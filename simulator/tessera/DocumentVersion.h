#pragma once

#include <cstdint>
#include <string>

namespace tsr {

// A document's identity within its database, and how often it was changed.
struct DocumentVersion {
    std::string unid;
    std::uint32_t sequence = 0;
    bool takesPart = true; // in the replication at hand
};

} // namespace tsr
