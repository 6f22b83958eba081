#include "tessera/Exchange.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tsr {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr auto handheld = ConflictRule::KeepHandheld;
constexpr auto copy = ConflictRule::KeepCopy;
constexpr auto both = ConflictRule::KeepBoth;

enum Outcome { Nothing, Wanted, Anomaly, Receive };

Outcome outcomeOf(const Exchange& exchange) {
    EXPECT_LE(exchange.wanted.size() + exchange.anomalies.size() + exchange.toReceive.size(), 1u);
    EXPECT_THAT(exchange.deleted, IsEmpty());
    if (!exchange.wanted.empty()) return Wanted;
    if (!exchange.anomalies.empty()) return Anomaly;
    return exchange.toReceive.empty() ? Nothing : Receive;
}

TEST(Exchange, SettlesWhatBothSidesHave) {
    const struct {
        std::uint32_t known;
        bool modified;
        std::uint32_t sequence;
        ConflictRule rule;
        Outcome outcome;
        const char* reason;
    } rows[] = {
        {3, false, 3, handheld, Nothing, "nothing has changed"},
        {3, false, 3, both, Nothing, "the rule is for conflicts"},
        {3, true, 3, handheld, Wanted, "the handheld alone"},
        {3, true, 3, copy, Wanted, "the handheld alone"},
        {3, true, 3, both, Wanted, "the handheld alone"},
        {3, false, 4, handheld, Receive, "Notes alone"},
        {3, false, 9, both, Receive, "Notes alone, several times"},
        {3, true, 4, handheld, Wanted, "a conflict"},
        {3, true, 4, copy, Wanted, "a conflict, whose loser comes as if it had won"},
        {3, true, 4, both, Anomaly, "a conflict"},
        {0, false, 1, handheld, Receive, "reset"},
        {0, false, 7, both, Receive, "reset"},
        {0, true, 7, handheld, Wanted, "modified and reset, which is a conflict"},
        {0, true, 7, both, Anomaly, "modified and reset"},
        {4, false, 3, handheld, Receive, "Notes went back in time: a store restored"},
        {65535, false, 65535, handheld, Nothing, "the largest number that a handheld keeps"},
        {1, false, 65537, handheld, Nothing, "of 65537 the handheld kept 1"},
        {65537, false, 65537, handheld, Nothing, "or all of it, within the session"},
        {2, true, 65538, both, Wanted, "changed on the handheld alone"},
        {65535, false, 65537, handheld, Receive, "the next number after 65535"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.reason);
        EXPECT_EQ(outcomeOf(compare({{{"db", "a"}, row.known, row.modified}}, "db", {{"a", row.sequence}},
                                    row.rule)),
                  row.outcome);
    }
}

TEST(Exchange, CopiesTheLosersOfConflictsAlone) {
    const std::vector<KnownItem> known{
        {{"db", "a"}, 1, true}, {{"db", "b"}, 1, true}, {{"db", "c"}, 1, false}};
    const std::vector<DocumentVersion> documents{{"a", 2}, {"b", 1}, {"c", 2}};
    EXPECT_THAT(compare(known, "db", documents, copy).copied, ElementsAre("a"));
    EXPECT_THAT(compare(known, "db", documents, both).copied, IsEmpty());
}

TEST(Exchange, LeavesWhatTakesNoPartButWhatTheHandheldChanged) {
    const std::vector<DocumentVersion> documents{{"a", 2, false}, {"b", 1, false}, {"c", 1, false}};
    const Exchange exchange =
        compare({{{"db", "a"}, 1, false}, {{"db", "b"}, 1, true}}, "db", documents, handheld);
    EXPECT_THAT(exchange.toReceive, IsEmpty());
    EXPECT_THAT(exchange.deleted, IsEmpty());
    EXPECT_THAT(exchange.wanted, ElementsAre(ItemName{"db", "b"}));
}

TEST(Exchange, GivesWhatTheHandheldDoesNotKnowInTheOrderOfTheDocuments) {
    const Exchange exchange = compare({{{"db", "b"}, 1, false}, {{"db", "c"}, 1, false}}, "db",
                                      {{"d", 1}, {"c", 2}, {"b", 1}, {"a", 5}}, handheld);
    EXPECT_THAT(exchange.toReceive, ElementsAre("d", "c", "a"));
    EXPECT_THAT(exchange.deleted, IsEmpty());
}

TEST(Exchange, DeletesWhatNotesDoesNotHave) {
    const Exchange exchange = compare({{{"db", "gone"}, 1, false},
                                       {{"db", "edited"}, 2, true},
                                       {{"other", "a"}, 1, false},
                                       {{"", ""}, 0, false}},
                                      "db", {{"a", 1}}, both);
    EXPECT_THAT(exchange.deleted, ElementsAre(ItemName{"db", "gone"}, ItemName{"db", "edited"},
                                              ItemName{"other", "a"}, ItemName{"", ""}));
    EXPECT_THAT(exchange.toReceive, ElementsAre("a"));
    EXPECT_THAT(exchange.wanted, IsEmpty());
    EXPECT_THAT(exchange.anomalies, IsEmpty());
}

TEST(Exchange, CountsAnItemOnce) {
    const Exchange exchange =
        compare({{{"db", "a"}, 1, true}, {{"db", "a"}, 1, true}, {{"db", "a"}, 0, false}}, "db", {{"a", 1}},
                handheld);
    EXPECT_EQ(exchange.wanted.size(), 1u);
    EXPECT_THAT(exchange.toReceive, IsEmpty());
}

} // namespace
} // namespace tsr
