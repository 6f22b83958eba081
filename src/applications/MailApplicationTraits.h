#pragma once

#include "conduit/ApplicationTraits.h"
#include "device/fourCharacterCode.h"

namespace tsr {

class MailApplicationTraits : public ApplicationTraits {
public:
    MailApplicationTraits() {
        displayName = "Mail";
        appDbName = "MailDB";
        appDbCreator = fourCharacterCode("mail");
        appDbType = fourCharacterCode("DATA");
        syncDbName = "MailSync";
        syncDbCreator = fourCharacterCode("TSRA");
        syncDbType = fourCharacterCode("MAIL");
    }

    std::int16_t configCategory() const override { return 3; }
};

} // namespace tsr
