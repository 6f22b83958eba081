#include "foundation/Date.h"

#include "foundation/GeneralError.h"
#include "foundation/calendar.h"
#include "foundation/calendarText.h"
#include "foundation/narrowing.h"
#include "foundation/wrapping.h"

namespace tsr {

namespace {

constexpr std::int64_t monthsPerYear = 12;
constexpr std::uint32_t monthLengths[monthsPerYear] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
constexpr std::int64_t daysBeforeMonth[2][monthsPerYear] = {
    {0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334}, // common year
    {0, 31, 60, 91, 121, 152, 182, 213, 244, 274, 305, 335}, // leap year
};

// Also for the years before 1800 that a Julian day can stand for.
bool isLeap(std::int64_t year) { return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0); }

bool isValid(std::uint32_t year, std::uint32_t month, std::uint32_t day) {
    return year >= firstYear && month >= 1 && month <= monthsPerYear && day >= 1
        && day <= Date::daysInMonth(year, month);
}

// Days from one day of week forward to the next that is another, 0 for the same.
std::int32_t daysForward(std::uint32_t from, std::uint32_t to) {
    const std::int32_t days = static_cast<std::int32_t>(to - from);
    return days < 0 ? days + 7 : days;
}

} // namespace

Date::Date(std::uint32_t year, std::uint32_t month, std::uint32_t day) {
    if (!isValid(year, month, day)) {
        throw GeneralError(Message::InvalidDate) << Tag("y") << year << Tag("m") << month << Tag("d") << day;
    }
    pack(year, month, day);
}

Date::Date(std::uint32_t kind, std::uint32_t julianDay) : julianDay_(julianDay) {
    if (kind != 0) throw GeneralError(Message::InvalidArgument);
    unpackJulianDay();
}

std::uint32_t Date::year() const {
    if (packedYear() == 0) unpackJulianDay();
    return packedYear();
}

std::uint32_t Date::month() const {
    if (packedYear() == 0) unpackJulianDay();
    return packed_ >> 23 & 0xF;
}

std::uint32_t Date::day() const {
    if (packedYear() == 0) unpackJulianDay();
    return packed_ >> 27;
}

std::uint32_t Date::julianDay() const {
    if (julianDay_ == 0 && packedYear() != 0) julianDay_ = packedAsJulianDay();
    return julianDay_;
}

std::uint32_t Date::dayOfWeek() const { return (julianDay() + 1) % 7; }

void Date::setDay(std::uint32_t day) {
    if (day < 1 || day > daysInMonth(year(), month())) {
        throw GeneralError(Message::InvalidDay)
            << Tag("d") << day << Tag("m") << month() << Tag("y") << year();
    }
    pack(year(), month(), day);
    julianDay_ = 0;
}

Date& Date::operator+=(const TimeInterval& interval) {
    const std::uint64_t seconds = magnitude(interval.seconds());
    if (seconds % secondsPerDay != 0) throw GeneralError(Message::NotWholeDays);
    const std::uint64_t days = seconds / secondsPerDay;
    if (interval.seconds() < 0) {
        if (days > julianDay()) throw GeneralError(Message::IntervalTooLarge);
        julianDay_ -= static_cast<std::uint32_t>(days);
    } else {
        const std::uint32_t narrow = narrowToUnsigned(days);
        julianDay_ = julianDay() + narrow;
    }
    packed_ = 0;
    return *this;
}

bool Date::isLeapYear(std::uint32_t year) { return isLeap(year); }

std::uint32_t Date::daysInMonth(std::uint32_t year, std::uint32_t month) {
    if (month < 1 || month > monthsPerYear) throw GeneralError(Message::InvalidMonth) << Tag("m") << month;
    return month == 2 && isLeapYear(year) ? 29 : monthLengths[month - 1];
}

Date Date::nthDayOfWeek(std::uint32_t year, std::uint32_t month, std::uint32_t dayOfWeek,
                        std::int32_t instance) {
    Date date(year, month, 1);
    if (instance >= 1) {
        date += TimeInterval::fromDays(daysForward(date.dayOfWeek(), dayOfWeek));
        date += TimeInterval::fromWeeks(instance - 1);
    } else {
        date.setDay(daysInMonth(year, month));
        date += TimeInterval::fromDays(-daysForward(dayOfWeek, date.dayOfWeek()));
        date += TimeInterval::fromWeeks(instance + 1);
    }
    if (date.month() != month) {
        throw GeneralError(Message::InvalidDayOfWeekInstance)
            << Tag("n") << instance << Tag("d") << dayOfWeek << Tag("m") << month << Tag("y") << year;
    }
    return date;
}

void Date::pack(std::uint32_t year, std::uint32_t month, std::uint32_t day) const {
    packed_ = (year & 0x7FFFFF) | (month & 0xF) << 23 | day << 27;
}

// Divisions truncate towards 0. The year is first taken 365 days long, which overshoots, and then walked
// back.
void Date::unpackJulianDay() const {
    const std::int64_t days = static_cast<std::int64_t>(julianDay_) - epochJulianDay;
    const std::int64_t years = days / 365;
    std::int64_t year = years + firstYear;
    std::int64_t rest = days % 365 - (years - 1) / 4 + (years - 1) / 100 - (years + 199) / 400;
    while (rest < 0) {
        --year;
        rest += isLeap(year) ? 366 : 365;
    }
    const auto& before = daysBeforeMonth[isLeap(year)];
    std::uint32_t month = 1;
    while (month < monthsPerYear && before[month] <= rest) ++month;
    pack(static_cast<std::uint32_t>(year), month, static_cast<std::uint32_t>(rest - before[month - 1] + 1));
}

std::uint32_t Date::packedAsJulianDay() const {
    const std::int64_t year = packedYear();
    const std::int64_t days = (year - 1800) * 365 + (year - 1801) / 4 - (year - 1801) / 100
                            + (year - 1601) / 400 + daysBeforeMonth[isLeap(year)][month() - 1] + day()
                            + (epochJulianDay - 1);
    return static_cast<std::uint32_t>(days);
}

Date operator+(Date date, const TimeInterval& interval) { return date += interval; }

TimeInterval operator-(const Date& left, const Date& right) {
    const std::int64_t days = static_cast<std::int64_t>(left.julianDay()) - right.julianDay();
    return TimeInterval(days * secondsPerDay);
}

std::ostream& operator<<(std::ostream& stream, const Date& date) {
    return stream << formatted("%x", calendarFields(date));
}

} // namespace tsr
