#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "handheld/commands/CommandLine.h"

namespace tsr {

// The bytes of a record or preference on the command line: as text, in hexadecimal, or in a file.
struct DataOptions {
    std::optional<std::string> text;
    std::optional<std::string> hex;
    std::optional<std::string> file;

    void addTo(CLI::App& command);
    bool isGiven() const { return text || hex || file; }

    // Raises UsageError when nothing is given, for bad digits and for more than 65,535 bytes; HandheldError
    // for a file that cannot be read.
    std::vector<std::uint8_t> data() const;
};

// The id of a record, "0x1201" or "4609". Raises UsageError.
std::uint32_t parseRecordId(const std::string& text);

} // namespace tsr
