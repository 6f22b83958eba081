#include "tessera/Application.h"

#include <array>

#include "tessera/Memo.h"

namespace tsr {

std::span<const Application> applications() {
    static constexpr std::array<Application, 1> all{{
        {.databaseKind = memoDatabaseKind, .documentKind = memoKind, .commands = memoCommands},
    }};
    return all;
}

} // namespace tsr
