#include "tessera/Application.h"

#include <array>

#include "tessera/Memo.h"
#include "tessera/UserDatabase.h"
#include "tessera/contactDocument.h"
#include "tessera/taskDocument.h"

namespace tsr {

std::span<const Application> applications() {
    static constexpr std::array<Application, 3> all{{
        {.databaseKind = contactsKind,
         .documentKind = contactKind,
         .commands = addressCommands,
         .adopt = adoptContact,
         .infoStrings = 2,
         .itemStrings = 4,
         .countsDeletions = true,
         .tellsReplacedUnid = true},
        {.databaseKind = journalKind, .documentKind = memoKind, .commands = memoCommands, .adopt = adoptMemo},
        {.databaseKind = mailDatabaseKind,
         .documentKind = taskKind,
         .commands = toDoCommands,
         .adopt = adoptTask,
         .infoStrings = 2,
         .itemStrings = 2},
    }};
    return all;
}

} // namespace tsr
