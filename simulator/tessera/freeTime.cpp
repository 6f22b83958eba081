#include "tessera/freeTime.h"

#include <algorithm>

namespace tsr {

namespace {

constexpr std::int64_t secondsPerDay = 86400;

// 1970-01-01 was a Thursday; 0 is Monday.
std::size_t weekday(std::int64_t daysSince1970) { return static_cast<std::size_t>((daysSince1970 + 3) % 7); }

void appendWholeMinutes(std::vector<Span>& spans, const Span& span) {
    const Span whole{(span.start + 59) / 60 * 60, span.end / 60 * 60};
    if (whole.start < whole.end) spans.push_back(whole);
}

void appendCutAtMidnights(std::vector<Span>& spans, Span span, const ZoneRule& zone) {
    for (;;) {
        const std::int64_t today = zone.toLocal(span.start) / secondsPerDay;
        const std::int64_t midnight = zone.toUtc((today + 1) * secondsPerDay);
        if (midnight <= span.start || midnight >= span.end) break;
        appendWholeMinutes(spans, {span.start, midnight});
        span.start = midnight;
    }
    appendWholeMinutes(spans, span);
}

// Appends what `busy`, which is sorted by its starts, leaves of `hours`.
void appendFree(std::vector<Span>& spans, Span hours, const std::vector<Span>& busy,
                const ZoneRule& askerZone) {
    for (const Span& taken : busy) {
        if (taken.end <= hours.start || taken.start >= hours.end || taken.start >= taken.end) continue;
        if (taken.start > hours.start) appendCutAtMidnights(spans, {hours.start, taken.start}, askerZone);
        hours.start = std::min(taken.end, hours.end);
    }
    appendCutAtMidnights(spans, hours, askerZone);
}

} // namespace

std::vector<Span> freeSpans(const User& user, std::vector<Span> busy, const ZoneRule& askerZone,
                            std::int64_t now, std::uint32_t days) {
    std::sort(busy.begin(), busy.end(), [](const Span& a, const Span& b) { return a.start < b.start; });
    const std::int64_t today = user.zone.toLocal(now) / secondsPerDay;
    std::vector<Span> spans;
    for (std::int64_t day = today; day < today + days; ++day) {
        if (!user.hours.days[weekday(day)]) continue;
        const std::int64_t midnight = day * secondsPerDay;
        const Span hours{user.zone.toUtc(midnight + std::int64_t{user.hours.startMinute} * 60),
                         user.zone.toUtc(midnight + std::int64_t{user.hours.endMinute} * 60)};
        appendFree(spans, hours, busy, askerZone);
    }
    return spans;
}

} // namespace tsr
