#include "platform/posix/zoneRule.h"

#include <cstddef>
#include <string_view>

namespace tsr::platform {

namespace {

constexpr std::int32_t secondsPerHour = 3600;
constexpr std::int32_t defaultTransitionTime = 2 * secondsPerHour;

bool isDigit(char character) { return character >= '0' && character <= '9'; }

bool isLetter(char character) {
    return (character >= 'A' && character <= 'Z') || (character >= 'a' && character <= 'z');
}

// Walks the text from its start. The operations that return an optional or a bool take nothing more, and the
// whole parse ends, when they fail.
class RuleReader {
public:
    explicit RuleReader(std::string_view text) : rest_(text) {}

    bool atEnd() const { return rest_.empty(); }

    bool take(char wanted) {
        if (rest_.empty() || rest_.front() != wanted) return false;
        rest_.remove_prefix(1);
        return true;
    }

    // Three or more letters, or anything in angle brackets.
    bool takeName() {
        if (take('<')) {
            const std::size_t end = rest_.find('>');
            if (end == std::string_view::npos) return false;
            rest_.remove_prefix(end + 1);
            return true;
        }
        std::size_t length = 0;
        while (length < rest_.size() && isLetter(rest_[length])) ++length;
        rest_.remove_prefix(length);
        return length >= 3;
    }

    // At most three digits.
    std::optional<std::int32_t> takeNumber() {
        std::size_t length = 0;
        std::int32_t value = 0;
        while (length < rest_.size() && isDigit(rest_[length]) && length < 4)
            value = value * 10 + (rest_[length++] - '0');
        if (length == 0 || length > 3) return {};
        rest_.remove_prefix(length);
        return value;
    }

    // "[+|-]hh[:mm[:ss]]", in seconds.
    std::optional<std::int32_t> takeTime() {
        const std::int32_t sign = take('-') ? -1 : 1;
        if (sign == 1) take('+');
        std::int32_t seconds = 0;
        for (std::int32_t unit = secondsPerHour; unit >= 1; unit /= 60) {
            const auto value = takeNumber();
            if (!value || *value > (unit == secondsPerHour ? 167 : 59)) return {};
            seconds += *value * unit;
            if (unit == 1 || !take(':')) break;
        }
        return sign * seconds;
    }

    // ",Mm.w.d[/time]"; nothing for another form, and for a time outside of the day.
    std::optional<ZoneTransition> takeTransition() {
        if (!take(',') || !take('M')) return {};
        const auto month = takeNumber();
        if (!month || *month < 1 || *month > 12 || !take('.')) return {};
        const auto week = takeNumber();
        if (!week || *week < 1 || *week > 5 || !take('.')) return {};
        const auto day = takeNumber();
        if (!day || *day > 6) return {};
        const auto time = take('/') ? takeTime() : std::optional(defaultTransitionTime);
        if (!time || *time < 0 || *time >= 24 * secondsPerHour) return {};

        ZoneTransition transition;
        transition.month = static_cast<std::uint16_t>(*month);
        transition.instance = static_cast<std::uint16_t>(*week);
        transition.dayOfWeek = static_cast<std::uint16_t>(*day);
        transition.hour = static_cast<std::uint16_t>(*time / secondsPerHour);
        transition.minute = static_cast<std::uint16_t>(*time / 60 % 60);
        transition.second = static_cast<std::uint16_t>(*time % 60);
        return transition;
    }

private:
    std::string_view rest_;
};

} // namespace

std::optional<ZoneInformation> parseZoneRule(const std::string& text) {
    RuleReader reader(text);
    if (!reader.takeName()) return {};
    const auto bias = reader.takeTime();
    if (!bias) return {};

    ZoneInformation biasAlone;
    biasAlone.bias = *bias / 60;
    if (reader.atEnd()) return biasAlone;

    if (!reader.takeName()) return {};
    ZoneInformation zone = biasAlone;
    zone.daylightBias = -60;
    RuleReader withTime = reader;
    if (const auto daylight = withTime.takeTime()) {
        zone.daylightBias = *daylight / 60 - zone.bias;
        reader = withTime;
    }
    const auto start = reader.takeTransition();
    const auto end = reader.takeTransition();
    if (!start || !end || !reader.atEnd()) return biasAlone;
    zone.daylight = *start;
    zone.standard = *end;
    return zone;
}

} // namespace tsr::platform
