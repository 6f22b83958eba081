#pragma once

#include <set>
#include <string>
#include <vector>

#include "handheld/HandheldDatabase.h"
#include "tessera/DateWindow.h"
#include "tessera/Document.h"
#include "tessera/ZoneRule.h"

namespace tsr::test {

// What somebody sees who looks at the days of a window in his calendar, a line for each meeting on each day:
// "2002-02-06 12:30 45 Lunch | menu, alarm 15, private", or "2002-02-06 all day Lunch". The days on which it
// takes place make a meeting here, whichever records or documents those days stand in. A day that it takes
// whole is there once, also where a meeting of several days comes again before it has ended.
using Calendar = std::multiset<std::string>;

// A record that is none shows as "unreadable".
Calendar calendarOnDevice(const HandheldDatabase& database, const DateWindow& window);
Calendar calendarInNotes(const std::vector<Document>& documents, const ZoneRule& zone,
                         const DateWindow& window);

} // namespace tsr::test
