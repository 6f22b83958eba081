#include "tessera/taskDocument.h"

#include <gtest/gtest.h>

#include "tessera/TesseraError.h"
#include "tessera/hexadecimalText.h"

namespace tsr {
namespace {

using std::chrono::year;

Task call() {
    return {.subject = "Call Kim",
            .note = "at \xC3\xBC",
            .due = year(2002) / 3 / 4,
            .priority = 1,
            .completed = true,
            .isPrivate = true,
            .repeats = "FREQ=WEEKLY",
            .categories = {"Business"},
            .uid = ""};
}

TEST(TaskDocument, GoesBothWays) {
    Properties properties;
    setTask(properties, call());
    EXPECT_EQ(properties, (Properties{{"00040002", {"1"}},
                                      {"00170041", {"617420fc"}}, // "at ü", one byte a character
                                      {"00260003", {"1"}},
                                      {"0037001F", {"Call Kim"}},
                                      {"410F0002", {"1"}},
                                      {"41050040", {"289353600"}}, // 3,349 days from 1993-01-01
                                      {"Category", {"Business"}},
                                      {"Recurs", {"FREQ=WEEKLY"}}}));
    EXPECT_EQ(toTask(properties), call());
}

TEST(TaskDocument, LeavesWhatATaskDoesNotKnow) {
    Properties properties{{"Form", {"Task"}}, {"41050040", {"1"}}, {"Recurs", {"x"}}};
    setTask(properties, Task());
    EXPECT_EQ(properties, (Properties{{"00040002", {"0"}},
                                      {"00170041", {""}},
                                      {"00260003", {"2"}},
                                      {"0037001F", {""}},
                                      {"410F0002", {"0"}},
                                      {"Form", {"Task"}}}));
}

TEST(TaskDocument, IsReadFromWhateverThereIs) {
    const Task task = toTask({{"00170041", {"6"}}, {"00260003", {"7"}}, {"41050040", {"0"}}});
    EXPECT_EQ(task.note, ""); // half a byte
    EXPECT_EQ(task.priority, 99);
    EXPECT_EQ(task.due, std::nullopt);
    EXPECT_TRUE(task.isPrivate); // as handhelds take it
}

TEST(TaskDocument, HasDueDatesThatNotesCanSay) {
    Properties properties;
    Task task;
    for (const auto date : {year(1993) / 1 / 1, year(2129) / 2 / 8, year(2026) / 2 / 30}) {
        task.due = date;
        EXPECT_THROW(setTask(properties, task), TesseraError);
    }
    task.due = year(2129) / 2 / 7;
    setTask(properties, task);
    EXPECT_EQ(toTask(properties).due, year(2129) / 2 / 7);
}

TEST(TaskDocument, HasOnlyCharactersThatHandheldsHave) {
    EXPECT_THROW(toHexadecimalText("\xE2\x82\xAC"), TesseraError);
    EXPECT_EQ(fromHexadecimalText("C3BC"), "\xC3\x83\xC2\xBC"); // two characters, not one in UTF-8
}

TEST(TaskDocument, TakesOverWhatTheHandheldSends) {
    const Properties sent{{"0037001F", {"Call Kim"}},
                          {"00170041", {"at \xC3\xBC"}}, // sent as it is
                          {"00260003", {"99"}},
                          {"410F0002", {"0"}},
                          {"Category", {""}}};
    const Properties expected{{"00040002", {"0"}}, // not sent: not private
                              {"00170041", {"617420fc"}}, {"00260003", {"99"}}, {"0037001F", {"Call Kim"}},
                              {"410F0002", {"0"}},        {"Category", {""}}};
    EXPECT_EQ(adoptTask({}, sent), expected);
    Properties kept{{"41050040", {"86400"}}, {"00040002", {"3"}}, {"Form", {"Task"}}};
    Properties changed = expected;
    changed["Form"] = {"Task"};
    EXPECT_EQ(adoptTask(kept, sent), changed); // the due date and the privacy are gone
    Properties sentPrivate = sent;
    sentPrivate["00040002"] = {"3"};
    EXPECT_EQ(adoptTask({}, sentPrivate).at("00040002"), std::vector<std::string>{"3"});
}

} // namespace
} // namespace tsr
