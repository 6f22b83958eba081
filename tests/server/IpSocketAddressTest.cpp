#include <string>
#include <vector>

#include "server/IpSocketAddressImpl.h"
#include "support/bytes.h"
#include "support/errors.h"

#include "gmock/gmock.h"
#include "gtest/gtest.h"

namespace tsr {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> lookedUp;

// 10.1.2.3 for every name but "nobody".
platform::HostEntry* lookUp(const char* name) {
    static char address[] = {10, 1, 2, 3};
    static char* addresses[] = {address, nullptr};
    static platform::HostEntry entry{nullptr, nullptr, platform::internetFamily, sizeof address, addresses};
    lookedUp.emplace_back(name);
    return std::string(name) == "nobody" ? nullptr : &entry;
}

// The library of the system, but for its look-up of names.
class IpSocketAddressLookUp : public testing::Test {
protected:
    IpSocketAddressLookUp() {
        library.gethostbyname = &lookUp;
        lookedUp.clear();
    }

    std::string bytesOf(const std::string& host) {
        const IpSocketAddressImpl address(host, 0x1234, library);
        const auto* start = static_cast<const std::uint8_t*>(address.nativeAddress());
        return test::hexText(std::vector<std::uint8_t>(start + 2, start + IpSocketAddressImpl::bytes));
    }

    WinsockLibrary library{platform::socketLibraryLoader()};
};

TEST_F(IpSocketAddressLookUp, IsSparedADottedAddress) {
    EXPECT_EQ(bytesOf("192.168.1.2"), "12 34 C0 A8 01 02 00 00 00 00 00 00 00 00");
    EXPECT_THAT(lookedUp, IsEmpty());
}

TEST_F(IpSocketAddressLookUp, IsSparedAnEmptyHost) {
    EXPECT_EQ(bytesOf(""), "12 34 00 00 00 00 00 00 00 00 00 00 00 00");
    EXPECT_THAT(lookedUp, IsEmpty());
}

TEST_F(IpSocketAddressLookUp, FindsTheFirstAddressOfAName) {
    EXPECT_EQ(bytesOf("office"), "12 34 0A 01 02 03 00 00 00 00 00 00 00 00");
    EXPECT_THAT(lookedUp, ElementsAre("office"));
}

TEST_F(IpSocketAddressLookUp, IsAskedForTheAddressThatLooksLikeAFailure) {
    EXPECT_EQ(bytesOf("255.255.255.255"), "12 34 0A 01 02 03 00 00 00 00 00 00 00 00");
    EXPECT_THAT(lookedUp, ElementsAre("255.255.255.255"));
}

TEST_F(IpSocketAddressLookUp, FailsForANameThatNobodyHas) {
    EXPECT_EQ(test::textRaisedBy([this] { bytesOf("nobody"); }),
              "Unable to resolve the hostname 'nobody' to an ip address.");
}

} // namespace
} // namespace tsr
