#pragma once

#include <string>

#include "handheld/syncControl.h"

namespace tsr::test {

// The call that was made to fail with 0x4006; empty where the session ended before its turn. Calls are
// traced.
inline std::string failedCall() {
    for (std::uint64_t index = 0; index < handheldTraceCount(); ++index) {
        const std::string line = handheldTraceLine(index);
        if (line.find(" -> 0x4006") != std::string::npos) return line;
    }
    return {};
}

} // namespace tsr::test
