#include "tessera/passwords.h"

#include <gtest/gtest.h>

namespace tsr {
namespace {

TEST(Passwords, MatchOnlyThemselves) {
    const std::string hash = hashPassword("secret", PasswordCost::Minimal);
    EXPECT_TRUE(passwordMatches(hash, "secret"));
    EXPECT_FALSE(passwordMatches(hash, "Secret"));
    EXPECT_FALSE(passwordMatches(hash, ""));
    EXPECT_FALSE(passwordMatches("not a hash", "secret"));
}

TEST(Passwords, DontStandInTheirHash) {
    const std::string hash = hashPassword("secret", PasswordCost::Minimal);
    EXPECT_EQ(hash.find("secret"), std::string::npos);
    EXPECT_NE(hash, hashPassword("secret", PasswordCost::Minimal)); // salted
}

TEST(Passwords, KeepTheirCostInTheHash) {
    EXPECT_TRUE(passwordMatches(hashPassword("secret", PasswordCost::Interactive), "secret"));
}

} // namespace
} // namespace tsr
