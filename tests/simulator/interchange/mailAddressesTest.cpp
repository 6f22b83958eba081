#include "interchange/mailAddresses.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tsr {
namespace {

using Addresses = std::vector<std::string>;

TEST(MailAddresses, DividesAtCommasAndLineFeeds) {
    const std::pair<const char*, Addresses> rows[] = {
        {"", {}},
        {" , \n,", {}},
        {"Pat Lee", {"Pat Lee"}},
        {"Pat Lee, Jo Brown", {"Pat Lee", "Jo Brown"}},
        {"Pat Lee\nJo Brown\r\n", {"Pat Lee", "Jo Brown"}},
        {"\"Lee, Pat\" <pat@example.com>,jo@example.com",
         {"\"Lee, Pat\" <pat@example.com>", "jo@example.com"}},
        {"<a,b>,c", {"<a,b>", "c"}},
        {"<a\nb,c", {"<a", "b", "c"}},
        {"\"Lee, Pat\nJo", {"\"Lee", "Pat", "Jo"}}, // a quotation mark alone closes nobody in
        {"Jo, \"Lee", {"Jo", "\"Lee"}},
        {"\"a\nb\",c", {"\"a", "b\"", "c"}},
        {"Pat <pat, Jo", {"Pat <pat", "Jo"}}, // nor does a bracket
        {"Pat <pat, Jo <jo>, Kim", {"Pat <pat", "Jo <jo>", "Kim"}},
        {"Pat> <pat, Jo>, Kim", {"Pat> <pat, Jo>", "Kim"}},
        {"\"a<b\",c>", {"\"a<b\"", "c>"}}, // one in the other counts for nothing
        {"<a\"b>,c\"", {"<a\"b>", "c\""}},
    };
    for (const auto& [list, addresses] : rows) {
        SCOPED_TRACE(list);
        EXPECT_EQ(dividedAddresses(list), addresses);
    }
}

TEST(MailAddresses, JoinsThem) {
    EXPECT_EQ(joinedAddresses({}, ", "), "");
    EXPECT_EQ(joinedAddresses({"a", "b", "c"}, ", "), "a, b, c");
    EXPECT_EQ(joinedAddresses({"a", "b"}, "\n"), "a\nb");
}

} // namespace
} // namespace tsr
