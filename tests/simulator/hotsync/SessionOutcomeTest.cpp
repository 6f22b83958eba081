#include "hotsync/SessionOutcome.h"

#include <sstream>

#include <nlohmann/json.hpp>

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

TEST(SessionOutcome, TellsWhatWentEachWayAndWhatWasRefused) {
    SessionOutcome outcome{
        "Memo Pad",
        0,
        {{"Memo Pad", 19}, {"** First", 22}, {"**** Why", 22}, {"** Second", 22}, {"Memo Pad", 20}}};
    outcome.traffic = Traffic{{1, 2, 3}, {4, 5, 6}};
    EXPECT_EQ(outcome.refused(), 2U); // chains, not lines
    std::ostringstream out;
    outcome.print(out);
    EXPECT_EQ(out.str(),
              "Memo Pad: finished\n"
              "  to Notes 1 new, 2 changed, 3 deleted; to the handheld 4 new, 5 changed, 6 deleted; "
              "2 refused\n"
              "  ! First\n"
              "    because: Why\n"
              "  ! Second\n");
}

TEST(SessionOutcome, CountsNothingAsRefusedInASessionThatEnded) {
    const SessionOutcome outcome{"Memo Pad", 0, {{"Memo Pad", 19}, {"** All of it", 22}, {"Memo Pad", 21}}};
    EXPECT_EQ(outcome.refused(), 0U);
}

TEST(SessionOutcome, TellsProgramsTheSame) {
    SessionOutcome outcome{"Memo Pad", 0, {{"Memo Pad", 19}, {"caf\xE9", -1}, {"Memo Pad", 20}}};
    outcome.traffic = Traffic{{1, 2, 3}, {4, 5, 6}};
    const nlohmann::json parsed =
        nlohmann::json::parse(outcome.json()); // a byte that is no UTF-8 is replaced
    EXPECT_EQ(parsed["application"], "Memo Pad");
    EXPECT_EQ(parsed["end"], "finished");
    EXPECT_EQ(parsed["toNotes"], (nlohmann::json{{"new", 1}, {"changed", 2}, {"deleted", 3}}));
    EXPECT_EQ(parsed["toHandheld"], (nlohmann::json{{"new", 4}, {"changed", 5}, {"deleted", 6}}));
    EXPECT_EQ(parsed["refused"], 0);
    EXPECT_EQ(parsed["log"][1], (nlohmann::json{{"text", "caf\uFFFD"}, {"activity", -1}}));
}

} // namespace
} // namespace tsr
