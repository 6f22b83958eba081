#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include "hotsync/Traffic.h"

namespace tsr {

// One entry of the HotSync log.
struct LogEntry {
    std::string text;
    std::int32_t activity; // the log's own code
};

// How one call of the conduit ended, as the HotSync log and the result tell it.
struct SessionOutcome {
    enum class End { Finished, NothingToDo, Aborted, NotServed };

    std::string title; // of the application
    std::int32_t result = 0;
    std::vector<LogEntry> entries;
    Traffic traffic{};

    End end() const;
    bool isGood() const { return end() == End::Finished || end() == End::NothingToDo; }

    std::size_t refused() const; // items that failed alone

    // What went each way, and the log for people: error chains, which the log marks with two asterisks for
    // each level, become indented lines.
    void print(std::ostream& out) const;

    // The same for programs, as JSON.
    std::string json() const;
};

} // namespace tsr
