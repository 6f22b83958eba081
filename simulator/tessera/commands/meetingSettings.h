#pragma once

#include <CLI/CLI.hpp>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tessera/Meeting.h"

namespace tsr {

// What the options of `add` and `edit` say of a meeting.
class MeetingSettings {
public:
    // The options of both; gives that of the start.
    CLI::Option* addTo(CLI::App& command);
    void addInstanceTo(CLI::App& command); // of `edit` alone: those of one day

    // Raises ArgumentError, and TesseraError for a day on which the meeting doesn't take place.
    void apply(Meeting& meeting, const ZoneRule& zone) const;

private:
    void applyRule(Meeting& meeting, const ZoneRule& zone) const;
    void applyStart(Meeting& meeting, const ZoneRule& zone) const;
    void applyToInstance(Meeting& meeting) const;

    std::optional<std::string> start_;
    std::optional<std::uint32_t> minutes_;
    std::optional<std::string> subject_;
    std::optional<std::string> note_;
    std::optional<bool> allDay_;
    std::optional<bool> isPrivate_;
    std::optional<std::string> alarm_;
    std::optional<std::string> repeat_;
    std::optional<std::uint32_t> every_;
    std::optional<std::string> until_;
    std::vector<std::string> on_;
    std::optional<std::string> instance_;
    bool cancel_ = false;
    bool restore_ = false;
};

} // namespace tsr
