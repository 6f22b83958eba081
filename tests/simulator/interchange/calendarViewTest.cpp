#include "interchange/calendarView.h"

#include <sstream>

#include <gtest/gtest.h>

#include "interchange/calendarDays.h"

namespace tsr {
namespace {

using namespace std::chrono;

constexpr std::int64_t hour = 3600;
const sys_days monday = year(2026) / 11 / 23;

std::int64_t at(int dayNumber, int hours) { return secondsOf(monday + days(dayNumber)) + hours * hour; }

std::string daysText(const std::vector<CalendarEntry>& entries, int last) {
    std::ostringstream out;
    writeDays(out, entries, monday, monday + days(last));
    return out.str();
}

TEST(CalendarView, ListsByDay) {
    EXPECT_EQ(daysText({{at(1, 9), 30, false, "Late"},
                        {at(0, 10), 60, false, "Team"},
                        {at(0, 0), 2880, true, "Trip"},
                        {at(5, 9), 60, false, "Outside"}},
                       4),
              "Mon 2026-11-23\n"
              "  all day      Trip\n"
              "  10:00-11:00  Team\n"
              "Tue 2026-11-24\n"
              "  all day      Trip\n"
              "  09:00-09:30  Late\n");
}

TEST(CalendarView, ListsWhatRunsOverMidnightOnBothDays) {
    EXPECT_EQ(daysText({{at(0, 23), 120, false, ""}}, 2), "Mon 2026-11-23\n"
                                                          "  23:00-01:00\n"
                                                          "Tue 2026-11-24\n"
                                                          "  23:00-01:00\n");
    EXPECT_EQ(daysTouched(at(0, 23), 60, false), 1);
    EXPECT_EQ(daysTouched(at(0, 23), 61, false), 2);
    EXPECT_EQ(daysTouched(at(0, 0), 0, false), 1);
    EXPECT_EQ(daysTouched(at(0, 0), 1441, true), 2);
}

TEST(CalendarView, ShowsNothingThatActsOnATerminal) {
    EXPECT_EQ(daysText({{at(0, 9), 0, false, "a\x1B[2J\n\x7F\xC2\x9B\xC3\xBC"}}, 0),
              "Mon 2026-11-23\n  09:00-09:00  a?[2J???\xC3\xBC\n");
}

TEST(CalendarView, DrawsAMonth) {
    std::vector<CalendarEntry> entries{{at(0, 10), 60, false, "M\xC3\xBCller & Sons"},
                                       {at(1, 0), 1440, true, "Closed"}};
    for (int i = 0; i < 6; ++i) entries.push_back({at(2, 9 + i), 60, false, "x"});
    std::ostringstream out;
    writeMonth(out, entries, year(2026) / 11);
    EXPECT_EQ(out.str(), "November 2026\n"
                         "Mon        Tue        Wed        Thu        Fri        Sat        Sun\n"
                         "                                                                  1\n"
                         "2          3          4          5          6          7          8\n"
                         "9          10         11         12         13         14         15\n"
                         "16         17         18         19         20         21         22\n"
                         "23         24         25         26         27         28         29\n"
                         "10:00 M\xC3\xBCll Closed     09:00 x\n"
                         "                      10:00 x\n"
                         "                      11:00 x\n"
                         "                      12:00 x\n"
                         "                      +2 more\n"
                         "30\n");
}

} // namespace
} // namespace tsr
