#include "tessera/freeTimeRequests.h"

#include <algorithm>

#include "tessera/RequestRefused.h"
#include "tessera/freeTime.h"
#include "tessera/meetingOccurrences.h"
#include "tessera/numbers.h"

namespace tsr {

namespace {

// Devices may ask for 65,535 days; nobody plans further than this.
constexpr std::uint32_t maxSearchDays = 366;

std::vector<Span> busySpansOf(Store& store, const User& user, const DateWindow& days) {
    std::vector<Span> spans;
    for (const Document& document : store.documents(store.mailDatabase(user.id).id, meetingKind)) {
        const auto meeting = toMeeting(document);
        if (!meeting) continue;
        for (const Span& span : busySpans(*meeting, user.zone, days)) spans.push_back(span);
    }
    return spans;
}

// The number of days and a user's name; answered with pairs of start, in seconds since 1993, and minutes.
std::vector<std::string> findFreeTime(const RequestContext& context) {
    context.expectStrings(2);
    const std::uint32_t days = std::min(context.number(0), maxSearchDays);
    const std::optional<User> user = context.store.findUser(context.strings[1]);
    if (!user) throw RequestRefused(ResultCode::NotFound, "There is no user " + context.quoted(1) + ".");

    std::vector<std::string> strings;
    const std::chrono::sys_days today = dayOf(user->zone.toLocal(context.now));
    const DateWindow searched{today, today + std::chrono::days(days)};
    const std::vector<Span> busy = busySpansOf(context.store, *user, searched);
    for (const Span& span : freeSpans(*user, busy, context.user().zone, context.now, days)) {
        if (span.start < firstNotesSecond || span.start > lastNotesSecond) continue;
        strings.push_back(std::to_string(span.start - firstNotesSecond));
        strings.push_back(std::to_string((span.end - span.start) / 60));
    }
    return strings;
}

} // namespace

const std::vector<Route>& freeTimeRoutes() {
    static const std::vector<Route> routes{{122, false, findFreeTime}};
    return routes;
}

} // namespace tsr
