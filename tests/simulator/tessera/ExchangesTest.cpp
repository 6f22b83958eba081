#include "tessera/Exchanges.h"

#include <gtest/gtest.h>

namespace tsr {
namespace {

const Application memo{.databaseKind = "journal", .documentKind = "memo", .commands = memoCommands};
const Application address{.databaseKind = "names", .documentKind = "person", .commands = addressCommands};

TEST(Exchanges, KnowsEachByItsToken) {
    Exchanges exchanges;
    const std::string first = exchanges.add(memo, {.toReceive = {"a"}});
    const std::string second = exchanges.add(memo, {.toReceive = {"b"}});
    EXPECT_NE(first, second);
    EXPECT_EQ(exchanges.find(memo, first)->toReceive.front(), "a");
    EXPECT_EQ(exchanges.find(memo, second)->toReceive.front(), "b");
}

TEST(Exchanges, KnowsNoTokenOfAnotherApplication) {
    Exchanges exchanges;
    const std::string token = exchanges.add(memo, {});
    EXPECT_EQ(exchanges.find(address, token), nullptr);
    EXPECT_EQ(exchanges.find(memo, ""), nullptr);
    EXPECT_EQ(exchanges.find(memo, token + " "), nullptr);
}

TEST(Exchanges, ForgetsTheOldestOfMoreThanSixteen) {
    Exchanges exchanges;
    const std::string first = exchanges.add(memo, {});
    const std::string second = exchanges.add(memo, {});
    for (int i = 0; i < 15; ++i) exchanges.add(memo, {});
    EXPECT_EQ(exchanges.find(memo, first), nullptr);
    EXPECT_NE(exchanges.find(memo, second), nullptr);
}

} // namespace
} // namespace tsr
