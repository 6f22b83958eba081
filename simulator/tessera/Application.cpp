#include "tessera/Application.h"

#include <array>

#include "tessera/Memo.h"

namespace tsr {

std::span<const Application> applications() {
    static constexpr std::array<Application, 1> all{{
        {.databaseKind = journalKind, .documentKind = memoKind, .commands = memoCommands},
    }};
    return all;
}

} // namespace tsr
