#include "foundation/deviceDate.h"

#include <sstream>

#include "foundation/GeneralError.h"

namespace tsr {

namespace {

constexpr std::uint32_t deviceYear = 1904; // year 0 of the handheld

Date firstDeviceDate() { return Date(1993, 1, 1); }

} // namespace

std::uint16_t packDate(const Date& date) {
    const std::uint32_t year = (date.year() - deviceYear) & 0x7F;
    return static_cast<std::uint16_t>(year << 9 | date.month() << 5 | date.day());
}

Date unpackDate(std::uint16_t packed) {
    const std::uint32_t word = packed;
    const Date date((word >> 9) + deviceYear, word >> 5 & 0xF, word & 0x1F);
    if (date < firstDeviceDate()) {
        std::ostringstream text;
        text << date;
        throw GeneralError(Message::DateTooEarly) << Tag("d") << text.str();
    }
    return date;
}

} // namespace tsr
