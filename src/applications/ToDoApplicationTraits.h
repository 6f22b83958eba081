#pragma once

#include "conduit/ApplicationTraits.h"
#include "device/fourCharacterCode.h"

namespace tsr {

class ToDoApplicationTraits : public ApplicationTraits {
public:
    ToDoApplicationTraits() {
        displayName = "ToDo";
        appDbName = "ToDoDB";
        appDbCreator = fourCharacterCode("todo");
        appDbType = fourCharacterCode("DATA");
        syncDbName = "ToDoSync";
        syncDbCreator = fourCharacterCode("TSRA");
        syncDbType = fourCharacterCode("TODO");
    }

    std::int16_t configCategory() const override { return 5; }
};

} // namespace tsr
