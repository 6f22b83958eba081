#pragma once

#include "conduit/ApplicationTraits.h"
#include "device/fourCharacterCode.h"

namespace tsr {

// The free-time application of the handheld. Its database is the conduit's own, and it has no sync database.
class FreeTimeApplicationTraits : public ApplicationTraits {
public:
    FreeTimeApplicationTraits() {
        displayName = "FreeTime";
        appDbName = "VellumFreetime";
        appDbCreator = fourCharacterCode("TSRA");
        appDbType = fourCharacterCode("FREE");
    }

    std::int16_t configCategory() const override { return 0; }
};

} // namespace tsr
