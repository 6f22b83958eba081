#include "platform/module.h"

#include <windows.h>

#include "gtest/gtest.h"

namespace tsr::platform {
namespace {

// This program lies beside the conduit.
std::string programFolder() {
    char path[MAX_PATH] = "";
    GetModuleFileNameA(nullptr, path, sizeof path);
    const std::string whole = path;
    return whole.substr(0, whole.find_last_of('\\') + 1);
}

TEST(ModuleDirectory, IsThatOfTheLibraryWithItsLastSeparator) {
    const std::string directory = moduleDirectory("TsrConduit.dll");
    EXPECT_EQ(directory, programFolder());
    EXPECT_EQ(directory.back(), '\\');
}

TEST(ModuleDirectory, IsEmptyForAModuleThatIsNotThere) { EXPECT_EQ(moduleDirectory("Other.dll"), ""); }

} // namespace
} // namespace tsr::platform
