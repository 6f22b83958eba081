#include "tessera/Memo.h"

#include <gtest/gtest.h>

#include "tessera/TesseraError.h"

namespace tsr {
namespace {

TEST(Memo, GoesBothWays) {
    const Properties properties =
        toProperties({.subject = "Shopping", .body = "Milk\nBread", .categories = {"Home", "Shops"}});
    EXPECT_EQ(
        properties,
        (Properties{{"Body", {"Milk\nBread"}}, {"Category", {"Home", "Shops"}}, {"Subject", {"Shopping"}}}));
    const Memo memo = toMemo({"", 1, memoKind, properties});
    EXPECT_EQ(memo.subject, "Shopping");
    EXPECT_EQ(memo.body, "Milk\nBread");
    EXPECT_EQ(memo.categories, (std::vector<std::string>{"Home", "Shops"}));
}

TEST(Memo, HasNoEmptyCategories) {
    EXPECT_TRUE(toMemo({"", 1, memoKind, {{"Category", {""}}}}).categories.empty());
    // A handheld would look for a category of that name, and find the first that isn't in use.
    EXPECT_EQ(toProperties({.subject = "a", .body = "", .categories = {""}}),
              (Properties{{"Body", {""}}, {"Subject", {"a"}}}));
}

TEST(Memo, IsReadFromWhateverThereIs) {
    const Memo memo = toMemo({"", 1, memoKind, {{"Subject", {}}}});
    EXPECT_EQ(memo.subject, "");
    EXPECT_EQ(memo.body, "");
}

TEST(Memo, LeavesOtherProperties) {
    Properties properties{{"Form", {"JournalEntry"}}, {"Category", {"Home"}}};
    setMemo(properties, {.subject = "a", .body = "b", .categories = {}});
    EXPECT_EQ(properties, (Properties{{"Body", {"b"}}, {"Form", {"JournalEntry"}}, {"Subject", {"a"}}}));
}

TEST(Memo, HasASubjectOfOneLine) {
    EXPECT_THROW(toProperties({.subject = "a\nb", .body = "", .categories = {}}), TesseraError);
    EXPECT_THROW(toProperties({.subject = "a\r", .body = "", .categories = {}}), TesseraError);
}

} // namespace
} // namespace tsr
