#include "handheld/commands/MailOptions.h"

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>
#include <ostream>

#include "handheld/MailChoice.h"
#include "handheld/commands/handheldText.h"

namespace tsr {

namespace {

constexpr std::array<const char*, 4> kindNames = {"all", "send-only", "matching",
                                                  "unread"}; // by MailFilter::Kind

const char* kindName(MailFilter::Kind kind) { return kindNames[static_cast<std::size_t>(kind)]; }

void addSwitch(CLI::App& command, const char* on, const char* off, std::optional<bool>& value,
               const char* meaning, const char* opposite) {
    CLI::Option* const yes = command.add_flag_callback(
        on, [&value] { value = true; }, meaning);
    command
        .add_flag_callback(
            off, [&value] { value = false; }, opposite)
        ->excludes(yes);
}

void replaceText(std::string& text, const std::optional<std::string>& given) {
    if (given) text = toHandheldText(*given);
}

std::string oneLine(const std::string& text) {
    std::string line = fromHandheldText(text);
    std::replace(line.begin(), line.end(), '\n', '/');
    return line;
}

} // namespace

void MailOptions::addTo(CLI::App& command) {
    command
        .add_option("--mail-filter", kind,
                    "Which mail the handheld wants: all, send-only (none), matching (with one of the texts "
                    "below), or "
                    "unread")
        ->check(CLI::IsMember(std::vector<std::string>(kindNames.begin(), kindNames.end())));
    command.add_option("--filter-to", to, "A text in the addresses that mail goes to; empty for none");
    command.add_option("--filter-from", from, "A text in the address that it comes from");
    command.add_option("--filter-subject", subject, "A text in its subject");
    addSwitch(command, "--filter-containing", "--filter-without", wantsMatching,
              "Matching mail has one of the texts", "Matching mail has none of them");
    addSwitch(command, "--pass-high", "--no-pass-high", passesHigh, "Mail of high importance always matches",
              "It is filtered as the other is");
    command.add_option("--longest-body", longestBody, "Bytes of a body that are received (4000)");
    command.add_option("--signature", signature,
                       "What stands under messages that want a signature; empty for none");
}

void MailOptions::apply(Handheld& handheld) const {
    if (signature) setMailSignature(handheld, toHandheldText(*signature));
    if (!changesFilter()) return;
    MailFilter filter = mailFilter(handheld);
    if (kind) {
        const auto* const name = std::find(kindNames.begin(), kindNames.end(), *kind);
        filter.kind = static_cast<MailFilter::Kind>(name - kindNames.begin());
    }
    replaceText(filter.to, to);
    replaceText(filter.from, from);
    replaceText(filter.subject, subject);
    filter.wantsMatching = wantsMatching.value_or(filter.wantsMatching);
    filter.passesHigh = passesHigh.value_or(filter.passesHigh);
    filter.longestBody = longestBody.value_or(filter.longestBody);
    setMailFilter(handheld, filter);
}

void printMailChoice(std::ostream& out, const Handheld& handheld) {
    const MailFilter filter = mailFilter(handheld);
    out << "mail         " << kindName(filter.kind) << ", at most " << filter.longestBody
        << " bytes of a body\n";
    if (filter.kind == MailFilter::Kind::Matching) {
        out << "matching     " << (filter.wantsMatching ? "with" : "without") << " to '" << oneLine(filter.to)
            << "', from '" << oneLine(filter.from) << "', subject '" << oneLine(filter.subject) << "'"
            << (filter.passesHigh ? ", or of high importance" : "") << "\n";
    }
    const std::string signature = mailSignature(handheld);
    out << "signature    " << (signature.empty() ? "none" : oneLine(signature)) << "\n";
}

nlohmann::ordered_json mailChoiceJson(const Handheld& handheld) {
    const MailFilter filter = mailFilter(handheld);
    return {
        {"filter", kindName(filter.kind)},       {"to", fromHandheldText(filter.to)},
        {"from", fromHandheldText(filter.from)}, {"subject", fromHandheldText(filter.subject)},
        {"containing", filter.wantsMatching},    {"passHigh", filter.passesHigh},
        {"longestBody", filter.longestBody},     {"signature", fromHandheldText(mailSignature(handheld))}};
}

} // namespace tsr
