#pragma once

#include <iosfwd>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>

#include "handheld/Handheld.h"
#include "handheld/commands/CommandLine.h"

namespace tsr {

// What the user chooses for Mail beside its replication; an empty optional leaves a value as it is.
struct MailOptions {
    std::optional<std::string> kind;
    std::optional<std::string> to;
    std::optional<std::string> from;
    std::optional<std::string> subject;
    std::optional<bool> wantsMatching;
    std::optional<bool> passesHigh;
    std::optional<std::uint16_t> longestBody;
    std::optional<std::string> signature;

    void addTo(CLI::App& command);
    bool changesFilter() const {
        return kind || to || from || subject || wantsMatching || passesHigh || longestBody;
    }
    bool isGiven() const { return changesFilter() || signature; }
    void apply(Handheld& handheld) const; // raises HandheldError, UsageError
};

// What is chosen, for the user and for programs.
void printMailChoice(std::ostream& out, const Handheld& handheld);
nlohmann::ordered_json mailChoiceJson(const Handheld& handheld);

} // namespace tsr
