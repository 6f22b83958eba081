#include "hotsync/SessionOutcome.h"

#include <algorithm>

#include <nlohmann/json.hpp>

namespace tsr {

namespace {

constexpr std::int32_t started = 19;
constexpr std::int32_t finished = 20;
constexpr std::int32_t aborted = 21;
constexpr std::int32_t warning = 22;

const char* endText(SessionOutcome::End end) {
    switch (end) {
    case SessionOutcome::End::Finished: return "finished";
    case SessionOutcome::End::NothingToDo: return "nothing to do";
    case SessionOutcome::End::Aborted: return "ABORTED";
    case SessionOutcome::End::NotServed: return "not served by this conduit";
    }
    return "";
}

// The text of a chain's line without its asterisks and line end, and its depth from 1.
std::pair<std::string, std::size_t> chainLine(const std::string& text) {
    const std::size_t asterisks = std::min(text.find_first_not_of('*'), text.size());
    const std::size_t start = std::min(asterisks + 1, text.size());
    std::string line = text.substr(start);
    while (!line.empty() && (line.back() == '\n' || line.back() == '\r')) line.pop_back();
    return {line, std::max<std::size_t>(asterisks / 2, 1)};
}

void printWarning(std::ostream& out, const std::string& text) {
    const auto [line, depth] = chainLine(text);
    out << std::string(2 * depth, ' ') << (depth == 1 ? "! " : "because: ") << line << '\n';
}

} // namespace

SessionOutcome::End SessionOutcome::end() const {
    if (result != 0) return End::NotServed;
    const auto has = [this](std::int32_t activity) {
        return std::any_of(entries.begin(), entries.end(),
                           [activity](const LogEntry& entry) { return entry.activity == activity; });
    };
    if (has(finished)) return End::Finished;
    return has(aborted) || !has(started) ? End::Aborted : End::NothingToDo;
}

// In a session that finished each chain is that of one item.
std::size_t SessionOutcome::refused() const {
    if (end() != End::Finished) return 0;
    const auto count = std::count_if(entries.begin(), entries.end(), [](const LogEntry& entry) {
        return entry.activity == warning && chainLine(entry.text).second == 1;
    });
    return static_cast<std::size_t>(count);
}

void SessionOutcome::print(std::ostream& out) const {
    out << title << ": " << endText(end()) << '\n';
    if (end() == End::Finished) out << "  " << traffic.text() << "; " << refused() << " refused\n";
    for (const LogEntry& entry : entries) {
        if (entry.activity == warning) {
            printWarning(out, entry.text);
        } else if (entry.activity != started && entry.activity != finished && entry.activity != aborted) {
            out << "  " << entry.text << '\n';
        }
    }
}

std::string SessionOutcome::json() const {
    const auto counts = [](const Traffic::Counts& each) {
        return nlohmann::ordered_json{
            {"new", each.added}, {"changed", each.changed}, {"deleted", each.deleted}};
    };
    nlohmann::ordered_json log = nlohmann::ordered_json::array();
    for (const LogEntry& entry : entries) log.push_back({{"text", entry.text}, {"activity", entry.activity}});
    const nlohmann::ordered_json session = {{"application", title},
                                            {"end", endText(end())},
                                            {"toNotes", counts(traffic.toNotes)},
                                            {"toHandheld", counts(traffic.toHandheld)},
                                            {"refused", refused()},
                                            {"log", log}};
    return session.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

} // namespace tsr
