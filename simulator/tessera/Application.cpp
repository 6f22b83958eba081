#include "tessera/Application.h"

#include <array>

#include "tessera/Meeting.h"
#include "tessera/Memo.h"
#include "tessera/UserDatabase.h"
#include "tessera/contactDocument.h"
#include "tessera/meetingDifferences.h"
#include "tessera/meetingOccurrences.h"
#include "tessera/taskDocument.h"

namespace tsr {

std::span<const Application> applications() {
    static constexpr std::array<Application, 4> all{{
        {.databaseKind = contactsKind,
         .documentKind = contactKind,
         .commands = addressCommands,
         .adopt = adoptContact,
         .infoStrings = 2,
         .itemStrings = 4,
         .countsDeletions = true,
         .tellsReplacedUnid = true},
        {.databaseKind = mailDatabaseKind,
         .documentKind = meetingKind,
         .commands = dateBookCommands,
         .adopt = adoptMeeting,
         .infoStrings = 2,
         .itemStrings = 5,
         .takesPart = takesPlace,
         .given = withInstances,
         .differ = meetingDifferences},
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
