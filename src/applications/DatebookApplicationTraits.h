#pragma once

#include "conduit/ApplicationTraits.h"
#include "device/fourCharacterCode.h"

namespace tsr {

class DatebookApplicationTraits : public ApplicationTraits {
public:
    DatebookApplicationTraits() {
        displayName = "Date Book";
        appDbName = "DatebookDB";
        appDbCreator = fourCharacterCode("date");
        appDbType = fourCharacterCode("DATA");
        syncDbName = "DatebookSync";
        syncDbCreator = fourCharacterCode("TSRA");
        syncDbType = fourCharacterCode("DATE");
    }

    std::int16_t configCategory() const override { return 4; }
};

} // namespace tsr
