#pragma once

#include <optional>
#include <string>

#include <CLI/CLI.hpp>

namespace tsr {

// A flag such as "--private,!--public" that may also not be given: then `value` stays as it is. The parser's
// own flags become false.
inline CLI::Option* addOptionalFlag(CLI::App& command, const std::string& names, std::optional<bool>& value,
                                    const std::string& description) {
    return command.add_flag_function(
        names, [&value](std::int64_t count) { value = count > 0; }, description);
}

} // namespace tsr
