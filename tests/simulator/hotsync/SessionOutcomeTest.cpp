#include "hotsync/SessionOutcome.h"

#include <sstream>

#include "gtest/gtest.h"

namespace tsr {
namespace {

using End = SessionOutcome::End;

// Activities of the HotSync log: 19 started, 20 finished, 21 aborted, 22 warning, -1 text.
SessionOutcome outcomeOf(std::vector<LogEntry> entries, std::int32_t result = 0) {
    return SessionOutcome{"Memo Pad", result, std::move(entries)};
}

TEST(SessionOutcome, EndsAsTheLogTells) {
    const struct {
        SessionOutcome outcome;
        End end;
        bool good;
    } rows[] = {
        {outcomeOf({{"", 19}, {"", 20}}), End::Finished, true},
        {outcomeOf({{"", 19}, {"** lost\n", 22}, {"", 20}}), End::Finished, true}, // some item failed
        {outcomeOf({{"", 19}}), End::NothingToDo, true},
        {outcomeOf({{"", 19}, {"", 21}}), End::Aborted, false},
        {outcomeOf({}), End::Aborted, false}, // it did not come so far as to start
        {outcomeOf({{"", 19}, {"", 20}}, 1), End::NotServed, false},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(row.outcome.end(), row.end);
        EXPECT_EQ(row.outcome.isGood(), row.good);
    }
}

TEST(SessionOutcome, PrintsAChainAsIndentedLines) {
    std::ostringstream out;
    outcomeOf({{"", 19},
               {"1 record sent", -1},
               {"** It failed.\n", 22},
               {"**** For a reason.\r\n", 22},
               {"****** At the bottom.", 22},
               {"", 21}})
        .print(out);
    EXPECT_EQ(out.str(), "Memo Pad: ABORTED\n"
                         "  1 record sent\n"
                         "  ! It failed.\n"
                         "    because: For a reason.\n"
                         "      because: At the bottom.\n");
}

TEST(SessionOutcome, TakesAWarningWithoutAsterisks) {
    for (const char* text : {"", "*", "**", "no chain"}) {
        std::ostringstream out;
        outcomeOf({{text, 22}}).print(out);
        EXPECT_TRUE(out.str().starts_with("Memo Pad: ABORTED\n  ! ")) << text;
    }
}

} // namespace
} // namespace tsr
