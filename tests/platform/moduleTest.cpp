#include "platform/module.h"

#include <string>

#include "gtest/gtest.h"

namespace tsr::platform {
namespace {

TEST(ModuleDirectory, KeepsTheLastSeparator) {
    // The tests hold the conduit's code themselves, so that this is their own folder.
    const std::string directory = moduleDirectory("TsrConduit.dll");
    ASSERT_FALSE(directory.empty());
    EXPECT_EQ(directory.back(), '/');
}

TEST(ModuleDirectory, IsEmptyForAModuleThatIsNotThere) { EXPECT_EQ(moduleDirectory("Other.dll"), ""); }

TEST(FileVersion, IsEmptyForAFileWithoutOne) {
    EXPECT_EQ(fileVersion("TsrConduit.dll"), "2.4.2.0");
    EXPECT_EQ(fileVersion("Other.dll"), "");
}

} // namespace
} // namespace tsr::platform
