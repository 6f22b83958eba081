#pragma once

#include "conduit/ApplicationTraits.h"
#include "device/fourCharacterCode.h"

namespace tsr {

class AddressApplicationTraits : public ApplicationTraits {
public:
    AddressApplicationTraits() {
        displayName = "Address";
        appDbName = "AddressDB";
        appDbCreator = fourCharacterCode("addr");
        appDbType = fourCharacterCode("DATA");
        syncDbName = "AddressSync";
        syncDbCreator = fourCharacterCode("TSRA");
        syncDbType = fourCharacterCode("ADDR");
    }

    std::int16_t configCategory() const override { return 2; }
};

} // namespace tsr
