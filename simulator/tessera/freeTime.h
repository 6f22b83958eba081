#pragma once

#include <cstdint>
#include <vector>

#include "tessera/Span.h"
#include "tessera/User.h"

namespace tsr {

// What is left of the working hours of `user` on `days` days, the day of `now` in his zone being the first,
// when the `busy` spans are taken out. In order of time, whole minutes.
//
// A span is cut at each midnight of the asker's zone: he lays it into weeks of his own, and one that ran over
// the end of a week would have no place there.
std::vector<Span> freeSpans(const User& user, std::vector<Span> busy, const ZoneRule& askerZone,
                            std::int64_t now, std::uint32_t days);

} // namespace tsr
