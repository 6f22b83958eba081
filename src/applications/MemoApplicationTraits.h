#pragma once

#include "conduit/ApplicationTraits.h"
#include "device/fourCharacterCode.h"

namespace tsr {

class MemoApplicationTraits : public ApplicationTraits {
public:
    MemoApplicationTraits() {
        displayName = "Memo Pad";
        appDbName = "MemoDB";
        appDbCreator = fourCharacterCode("memo");
        appDbType = fourCharacterCode("DATA");
        syncDbName = "MemoSync";
        syncDbCreator = fourCharacterCode("TSRA");
        syncDbType = fourCharacterCode("MEMO");
    }

    std::int16_t configCategory() const override { return 7; }
};

} // namespace tsr
