#include "tessera/ZoneRule.h"

#include <cstdlib>
#include <optional>

#include "foundation/zoneInformation.h"
#include "platform/posix/zoneRule.h"
#include "tessera/TesseraError.h"

namespace tsr {

namespace {

constexpr std::int32_t maxBias = 24 * 60;

// The desktop makes do with the distance of a rule whose changes of the clock it can't express; a server that
// did so would be wrong for half of the year.
bool hasLostItsTransitions(const std::string& text, const platform::ZoneInformation& information) {
    if (information.daylight.month != 0) return false;
    const std::size_t bracket = text.find('>');
    const std::size_t nameEnd =
        bracket == std::string::npos ? text.find_first_of("+-0123456789") : bracket + 1;
    return text.find_first_not_of("+-:0123456789", nameEnd) != std::string::npos;
}

platform::ZoneInformation parse(const std::string& text) {
    const std::optional<platform::ZoneInformation> information = platform::parseZoneRule(text);
    if (!information || hasLostItsTransitions(text, *information) || std::abs(information->bias) > maxBias) {
        throw TesseraError("'" + text + "' is not a time zone rule that can be served");
    }
    return *information;
}

std::int64_t secondsFrom1800To1970() { return TimeStamp(1, 0).secondsSince1800(); }

void append16(std::vector<std::uint8_t>& block, std::uint32_t value) {
    block.push_back(static_cast<std::uint8_t>(value & 0xFF));
    block.push_back(static_cast<std::uint8_t>(value >> 8 & 0xFF));
}

void append32(std::vector<std::uint8_t>& block, std::int32_t value) {
    append16(block, static_cast<std::uint32_t>(value));
    append16(block, static_cast<std::uint32_t>(value) >> 16);
}

void appendTransition(std::vector<std::uint8_t>& block, const platform::ZoneTransition& transition) {
    append16(block, transition.year);
    append16(block, transition.month);
    append16(block, transition.dayOfWeek);
    append16(block, transition.instance);
    append16(block, transition.hour);
    append16(block, transition.minute);
    append16(block, transition.second);
    append16(block, 0);
}

} // namespace

ZoneRule::ZoneRule(const std::string& text)
    : text_(text), information_(parse(text_)), zone_(toTimeZone(information_)) {}

std::vector<std::uint8_t> ZoneRule::block() const {
    std::vector<std::uint8_t> block;
    append32(block, information_.bias);
    append32(block, 0);
    append32(block, information_.daylightBias);
    appendTransition(block, information_.standard);
    appendTransition(block, information_.daylight);
    return block;
}

std::int64_t ZoneRule::toLocal(std::int64_t utc) const {
    return secondsOfReading(zone_.toLocal(TimeStamp(1, utc))) - secondsFrom1800To1970();
}

std::int64_t ZoneRule::toUtc(std::int64_t local) const {
    return zone_.toUtc(readingFromSeconds(local + secondsFrom1800To1970())).secondsSince1800()
         - secondsFrom1800To1970();
}

} // namespace tsr
