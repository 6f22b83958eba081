#include "interchange/iCalendar.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "interchange/InterchangeError.h"

namespace tsr {
namespace {

using std::chrono::day;
using std::chrono::month;
using std::chrono::year;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;

constexpr std::int64_t stamp = 1763712000; // 2025-11-21 08:00 UTC

Task readOne(const std::string& lines) {
    const auto tasks = readTasks("BEGIN:VCALENDAR\r\nVERSION:2.0\r\nBEGIN:VTODO\r\n" + lines
                                 + "END:VTODO\r\nEND:VCALENDAR\r\n");
    EXPECT_THAT(tasks, SizeIs(1));
    return tasks.at(0);
}

TEST(ICalendar, GivesTasks) {
    const Task task =
        readOne("SUMMARY:Call Kim\\, soon\r\nDESCRIPTION:one\\ntwo\r\nDUE;VALUE=DATE:20261130\r\n"
                "PRIORITY:1\r\nCLASS:PRIVATE\r\nRRULE:FREQ=WEEKLY\r\nCATEGORIES:Business,Home\r\n");
    EXPECT_EQ(task.subject, "Call Kim, soon");
    EXPECT_EQ(task.note, "one\ntwo");
    EXPECT_EQ(task.due, year(2026) / 11 / 30);
    EXPECT_EQ(task.priority, 1);
    EXPECT_FALSE(task.completed);
    EXPECT_TRUE(task.isPrivate);
    EXPECT_EQ(task.repeats, "FREQ=WEEKLY");
    EXPECT_EQ(task.categories, (std::vector<std::string>{"Business", "Home"}));
}

TEST(ICalendar, TellsCompletedTasks) {
    EXPECT_TRUE(readOne("STATUS:COMPLETED\r\n").completed);
    EXPECT_TRUE(readOne("COMPLETED:20261130T120000Z\r\n").completed);
    EXPECT_FALSE(readOne("STATUS:IN-PROCESS\r\n").completed);
}

TEST(ICalendar, DividesPriorities) {
    const std::pair<const char*, int> rows[] = {{"", 99},
                                                {"PRIORITY:0\r\n", 99},
                                                {"PRIORITY:4\r\n", 1},
                                                {"PRIORITY:5\r\n", 2},
                                                {"PRIORITY:6\r\n", 3},
                                                {"PRIORITY:9\r\n", 3}};
    for (const auto& [lines, priority] : rows) EXPECT_EQ(readOne(lines).priority, priority) << lines;
}

TEST(ICalendar, TakesTheDayOfADueTime) {
    EXPECT_EQ(readOne("DUE:20261130T233000Z\r\n").due, year(2026) / 11 / 30);
    EXPECT_EQ(readOne("DUE;TZID=Europe/Berlin:20261130T003000\r\n").due, year(2026) / 11 / 30);
    EXPECT_EQ(readOne("").due, std::nullopt);
}

TEST(ICalendar, IsWritten) {
    const Task task{.subject = "Call Kim",
                    .note = "soon",
                    .due = year(2026) / 11 / 30,
                    .priority = 2,
                    .completed = true,
                    .isPrivate = false,
                    .repeats = "",
                    .categories = {"Business"},
                    .uid = "0123"};
    const std::string text = taskCalendarText({task}, stamp);
    EXPECT_EQ(text, "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//Tessera//EN\r\nBEGIN:VTODO\r\nUID:0123\r\n"
                    "DTSTAMP:20251121T080000Z\r\nSUMMARY:Call Kim\r\nDESCRIPTION:soon\r\n"
                    "DUE;VALUE=DATE:20261130\r\nPRIORITY:5\r\nSTATUS:COMPLETED\r\nCLASS:PUBLIC\r\n"
                    "CATEGORIES:Business\r\nEND:VTODO\r\nEND:VCALENDAR\r\n");
}

TEST(ICalendar, GoesBothWays) {
    std::vector<Task> tasks(2);
    tasks[0] = {.subject = "M\xC3\xBCller; a,b",
                .note = "one\n\ntwo\\",
                .due = year(2004) / 2 / 29,
                .priority = 99,
                .completed = false,
                .isPrivate = true,
                .repeats = "FREQ=DAILY;COUNT=3",
                .categories = {"a b", "c"},
                .uid = ""};
    const std::string text = taskCalendarText(tasks, stamp);
    EXPECT_EQ(readTasks(text), tasks) << text;
}

TEST(ICalendar, LeavesOutRulesThatItDoesNotKnow) {
    Task task;
    task.repeats = "now and then";
    EXPECT_THAT(taskCalendarText({task}, stamp), Not(HasSubstr("RRULE")));
}

TEST(ICalendar, PassesOverWhatIsNoTask) {
    EXPECT_THAT(readTasks("BEGIN:VCALENDAR\r\nBEGIN:VEVENT\r\nSUMMARY:x\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n"),
                IsEmpty());
}

TEST(ICalendar, IsRefusedWhenItIsNone) {
    for (const char* text : {"", "nonsense", "BEGIN:VCARD\r\nEND:VCARD\r\n"})
        EXPECT_THROW(readTasks(text), InterchangeError) << text;
    EXPECT_THROW(readOne("DUE:soon\r\n"), InterchangeError);
    EXPECT_THROW(readOne("DUE;VALUE=DATE:20261350\r\n"), InterchangeError);
}

} // namespace
} // namespace tsr
