#include "tessera/addressees.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tsr {
namespace {

using ::testing::ElementsAre;

class AddresseesTest : public ::testing::Test {
protected:
    AddresseesTest() {
        for (const char* const name :
             {"Max", "Pat Lee/Sales", "Kim Berg/Sales/Home", "Kim Berg/Stock", "jo@home", "J\xC3\xB6rg"}) {
            User user;
            user.name = name;
            store.addUser(user, "");
        }
    }

    std::string meant(const std::string& address) {
        const Addressees addressees = findAddressees(store, {address});
        if (addressees.users.size() == 1) return addressees.users[0].name;
        return addressees.unknown.at(0).reason;
    }

    Store store = Store::inMemory();
};

TEST_F(AddresseesTest, AreUsersByTheirNames) {
    const std::string nobody = "there is no user of this name";
    const std::string several = "several users have this name";
    const std::pair<const char*, std::string> rows[] = {
        {"Max", "Max"},
        {"mAX", "Max"},
        {"J\xC3\x96RG", "J\xC3\xB6rg"},
        {"Maxi", nobody},
        {"", nobody},
        {"Pat Lee/Sales", "Pat Lee/Sales"},
        {"CN=Pat Lee/OU=Sales", "Pat Lee/Sales"},
        {"Pat Lee", "Pat Lee/Sales"},
        {"Pat Lee/Stock", nobody}, // somebody else
        {"Max/Sales", "Max"},      // he has no more than a common name
        {"Kim Berg", several},
        {"Kim Berg/Stock", "Kim Berg/Stock"},
        {"Pat Lee/Sales@Office", "Pat Lee/Sales"},
        {"jo@home", "jo@home"},
        {"jo@work", nobody},
        {"\"Pat Lee\" <pl@home>", "Pat Lee/Sales"},
        {"Boss <max@home>", "Max"},
        {"<max>", "Max"},
        {"<", nobody},
        {"Max <", "Max"},
        {"@", nobody},
        {"/", nobody},
        {"=", nobody},
    };
    for (const auto& [address, name] : rows) EXPECT_EQ(meant(address), name) << address;
}

TEST_F(AddresseesTest, AreThereOnce) {
    const Addressees found = findAddressees(store, {"Pat Lee", "Nobody", "Max", "Pat Lee/Sales"});
    ASSERT_EQ(found.users.size(), 2u);
    EXPECT_EQ(found.users[0].name, "Pat Lee/Sales");
    EXPECT_EQ(found.users[1].name, "Max");
    ASSERT_EQ(found.unknown.size(), 1u);
    EXPECT_EQ(found.unknown[0].address, "Nobody");
}

} // namespace
} // namespace tsr
