#include "foundation/zoneInformation.h"

#include <cstddef>
#include <cstdint>
#include <vector>

#include "foundation/GeneralError.h"
#include "foundation/TransitionDateSpec.h"
#include "foundation/hexadecimal.h"
#include "foundation/wrapping.h"

namespace tsr {

namespace {

constexpr std::size_t blockBytes = 44;
constexpr std::int32_t lastOfMonth = 5;

using Bytes = std::vector<std::uint8_t>;

std::uint16_t wordAt(const Bytes& bytes, std::size_t offset) {
    return static_cast<std::uint16_t>(bytes[offset] | bytes[offset + 1] << 8);
}

std::int32_t signedAt(const Bytes& bytes, std::size_t offset) {
    const std::uint32_t low = wordAt(bytes, offset);
    const std::uint32_t high = wordAt(bytes, offset + 2);
    return static_cast<std::int32_t>(high << 16 | low);
}

platform::ZoneTransition transitionAt(const Bytes& bytes, std::size_t offset) {
    platform::ZoneTransition transition;
    transition.year = wordAt(bytes, offset);
    transition.month = wordAt(bytes, offset + 2);
    transition.dayOfWeek = wordAt(bytes, offset + 4);
    transition.instance = wordAt(bytes, offset + 6);
    transition.hour = wordAt(bytes, offset + 8);
    transition.minute = wordAt(bytes, offset + 10);
    transition.second = wordAt(bytes, offset + 12);
    return transition;
}

TransitionDateSpec toSpec(const platform::ZoneTransition& transition) {
    const std::int32_t instance = transition.instance == lastOfMonth ? -1 : transition.instance;
    return TransitionDateSpec(transition.month, transition.dayOfWeek, instance, transition.hour,
                              transition.minute, transition.second);
}

std::int32_t offsetFromBias(std::int32_t minutes) { return wrappingProduct32(minutes, -60); }

} // namespace

TimeZone toTimeZone(const platform::ZoneInformation& information) {
    if (information.standard.year != 0 || information.daylight.year != 0)
        throw GeneralError(Message::TimeZoneHasYears);
    const std::int32_t offset = offsetFromBias(information.bias);
    if (information.standard.month == 0 && information.daylight.month == 0) return TimeZone(offset);
    const TransitionDateSpec start = toSpec(information.daylight);
    const TransitionDateSpec end = toSpec(information.standard);
    return TimeZone(offset, offsetFromBias(information.daylightBias), start, end);
}

TimeZone parseTimeZoneBlock(const std::string& hexText) {
    Bytes bytes;
    hexToBinary(hexText, bytes);
    if (bytes.size() != blockBytes)
        throw GeneralError(Message::InvalidTimeZoneLength) << Tag("len") << bytes.size();
    platform::ZoneInformation information;
    information.bias = signedAt(bytes, 0);
    information.daylightBias = signedAt(bytes, 8);
    information.standard = transitionAt(bytes, 12);
    information.daylight = transitionAt(bytes, 28);
    return toTimeZone(information);
}

} // namespace tsr
