#include "tessera/ZoneRule.h"

#include <chrono>
#include <cstddef>

#include "tessera/TesseraError.h"

namespace tsr {

namespace {

// Reads a rule from left to right; a failure names the whole rule.
class RuleReader {
public:
    explicit RuleReader(const std::string& text) : text_(text) {}

    bool atEnd() const { return position_ == text_.size(); }
    bool at(char character) const { return !atEnd() && text_[position_] == character; }

    bool take(char character) {
        if (!at(character)) return false;
        ++position_;
        return true;
    }

    void expect(char character) {
        if (!take(character)) fail();
    }

    int number(int smallest, int largest) {
        int value = 0;
        const std::size_t start = position_;
        for (; !atEnd() && isDigit(text_[position_]); ++position_) {
            value = value * 10 + (text_[position_] - '0');
            if (value > largest) fail();
        }
        if (position_ == start || value < smallest) fail();
        return value;
    }

    // A zone's name: three letters or more, or signs and digits in angle brackets.
    void skipName() {
        const bool quoted = take('<');
        const std::size_t start = position_;
        while (!atEnd() && (isLetter(text_[position_]) || (quoted && isSignOrDigit(text_[position_])))) {
            ++position_;
        }
        if (position_ - start < 3) fail();
        if (quoted) expect('>');
    }

    [[noreturn]] void fail() const {
        throw TesseraError("'" + text_ + "' is not a time zone rule that can be served");
    }

private:
    static bool isDigit(char c) { return c >= '0' && c <= '9'; }
    static bool isLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }
    static bool isSignOrDigit(char c) { return isDigit(c) || c == '+' || c == '-'; }

    const std::string& text_;
    std::size_t position_ = 0;
};

// Minutes west of Greenwich, from hours[:minutes[:seconds]] with an optional sign. Seconds must be 0.
int readBias(RuleReader& reader) {
    const int sign = reader.take('-') ? -1 : 1;
    if (sign > 0) reader.take('+');
    int minutes = reader.number(0, 24) * 60;
    if (reader.take(':')) minutes += reader.number(0, 59);
    if (reader.take(':')) reader.number(0, 0);
    return sign * minutes;
}

platform::ZoneTransition readTransition(RuleReader& reader) {
    platform::ZoneTransition transition;
    const auto field = [&reader](int smallest, int largest) {
        return static_cast<std::uint16_t>(reader.number(smallest, largest));
    };
    reader.expect('M');
    transition.month = field(1, 12);
    reader.expect('.');
    transition.instance = field(1, 5);
    reader.expect('.');
    transition.dayOfWeek = field(0, 6);
    transition.hour = 2;
    if (reader.take('/')) {
        transition.hour = field(0, 23);
        if (reader.take(':')) transition.minute = field(0, 59);
        if (reader.take(':')) transition.second = field(0, 59);
    }
    return transition;
}

platform::ZoneInformation readRule(const std::string& text) {
    RuleReader reader(text);
    platform::ZoneInformation zone;
    reader.skipName();
    zone.bias = readBias(reader);
    if (reader.atEnd()) return zone;
    reader.skipName();
    zone.daylightBias = reader.at(',') ? -60 : readBias(reader) - zone.bias;
    reader.expect(',');
    zone.daylight = readTransition(reader);
    reader.expect(',');
    zone.standard = readTransition(reader);
    if (!reader.atEnd()) reader.fail();
    return zone;
}

int yearOf(std::int64_t local) {
    using namespace std::chrono;
    const year_month_day date(floor<days>(sys_seconds(seconds(local))));
    return static_cast<int>(date.year());
}

// The local reading of a transition in `year`.
std::int64_t moment(const platform::ZoneTransition& transition, int yearNumber) {
    using namespace std::chrono;
    const auto monthOfYear = year(yearNumber) / month(transition.month);
    const weekday day(transition.dayOfWeek);
    const sys_days date = transition.instance == 5 ? sys_days(monthOfYear / day[last])
                                                   : sys_days(monthOfYear / day[transition.instance]);
    const std::int64_t time = (transition.hour * 60 + transition.minute) * 60 + transition.second;
    return sys_seconds(date).time_since_epoch().count() + time;
}

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

ZoneRule::ZoneRule(const std::string& text) : text_(text), zone_(readRule(text_)) {}

std::vector<std::uint8_t> ZoneRule::block() const {
    std::vector<std::uint8_t> block;
    append32(block, zone_.bias);
    append32(block, 0);
    append32(block, zone_.daylightBias);
    appendTransition(block, zone_.standard);
    appendTransition(block, zone_.daylight);
    return block;
}

std::int64_t ZoneRule::toLocal(std::int64_t utc) const {
    const std::int64_t standard = utc - zone_.bias * 60;
    const std::int64_t daylight = standard - zone_.daylightBias * 60;
    return isDaylight(standard, daylight) ? daylight : standard;
}

std::int64_t ZoneRule::toUtc(std::int64_t local) const {
    const std::int64_t utc = local + zone_.bias * 60;
    return isDaylight(local, local) ? utc + zone_.daylightBias * 60 : utc;
}

// Whether daylight saving holds when the clock shows `standard` without it and `daylight` with it.
bool ZoneRule::isDaylight(std::int64_t standard, std::int64_t daylight) const {
    if (zone_.daylightBias == 0) return false;
    const int year = yearOf(daylight);
    const std::int64_t start = moment(zone_.daylight, year);
    const std::int64_t end = moment(zone_.standard, year);
    if (start < end) return standard >= start && daylight < end;
    return standard >= start || daylight < end; // south of the equator the new year falls into it
}

} // namespace tsr
