#include "platform/socketLibrary.h"

#include <cstring>

#include <windows.h>

#include "server/IpSocketAddress.h"
#include "server/IpSocketAddressImpl.h"
#include "support/bytes.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

// With a library that nothing else of this program loads.
TEST(SocketLibrary, IsLoadedSearchedAndFreed) {
    constexpr char name[] = "LZ32";
    platform::ISocketLibraryLoader& loader = platform::socketLibraryLoader();
    ASSERT_EQ(GetModuleHandleA(name), nullptr);
    void* const library = loader.load(name);
    ASSERT_NE(library, nullptr);
    EXPECT_NE(loader.find(library, "LZClose"), nullptr);
    EXPECT_EQ(loader.find(library, "LZClosed"), nullptr);
    loader.free(library);
    EXPECT_EQ(GetModuleHandleA(name), nullptr);
}

TEST(SocketLibrary, IsNullWhereThereIsNone) {
    EXPECT_EQ(platform::socketLibraryLoader().load("WSOCK33"), nullptr);
}

// By a function of the library that answers with a structure of its own.
TEST(SocketLibraryAddress, OfANameIsLookedUp) {
    const IpSocketAddress address("localhost", 80);
    std::vector<std::uint8_t> native(16);
    std::memcpy(native.data(), address.impl().nativeAddress(), native.size());
    EXPECT_EQ(test::hexText(native), "02 00 00 50 7F 00 00 01 00 00 00 00 00 00 00 00");
}

} // namespace
} // namespace tsr
