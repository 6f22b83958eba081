#pragma once

#include <CLI/CLI.hpp>
#include <optional>
#include <string>

namespace tsr {

// A flag that says yes, no ("--private,!--public") or, when it isn't there, nothing. The library's own flag
// would set an optional to no.
inline CLI::Option* addFlag(CLI::App& command, const std::string& names, std::optional<bool>& value,
                            const std::string& description) {
    return command.add_flag_function(
        names, [&value](std::int64_t count) { value = count > 0; }, description);
}

} // namespace tsr
