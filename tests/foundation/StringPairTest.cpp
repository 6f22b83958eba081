#include "foundation/StringPair.h"

#include <utility>

#include "support/errors.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

TEST(StringPair, DividesAtTheFirstEqualsSign) {
    const std::pair<const char*, StringPair> rows[] = {
        {"Subject=Lunch", {"Subject", "Lunch"}},
        {"a=b=c", {"a", "b=c"}}, // a value may hold the separator
        {"=", {"", ""}},         // both halves may be empty
        {"a=", {"a", ""}},
        {"=b", {"", "b"}},
    };
    for (const auto& [text, pair] : rows) EXPECT_EQ(splitPair(text), pair) << text;
}

TEST(StringPair, NeedsTheSeparator) {
    EXPECT_EQ(test::textRaisedBy([] { splitPair("Lunch"); }),
              "The string 'Lunch' is not a valid string pair.");
    EXPECT_EQ(test::textRaisedBy([] { splitPair(""); }), "The string '' is not a valid string pair.");
}

} // namespace
} // namespace tsr
