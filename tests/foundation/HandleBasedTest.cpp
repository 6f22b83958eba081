#include "foundation/HandleBased.h"

#include <type_traits>

#include "foundation/Win32Error.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

TEST(HandleBased, GivesItsHandle) {
    const HandleBased owner(platform::createEvent(true));
    EXPECT_TRUE(platform::setEvent(owner.handle()));
}

TEST(HandleBased, ClosesItsHandleAsItGoes) {
    platform::KernelHandle handle = 0;
    {
        const HandleBased owner(platform::createEvent(true));
        handle = owner.handle();
    }
    EXPECT_FALSE(platform::setEvent(handle));
}

TEST(HandleBased, ASecondCloseFails) {
    HandleBased owner(platform::createEvent(true));
    owner.closeHandle();
    EXPECT_THROW(owner.closeHandle(), Win32Error);
}

TEST(HandleBased, HasNoVirtualDestructor) { EXPECT_FALSE(std::has_virtual_destructor_v<HandleBased>); }

} // namespace
} // namespace tsr
