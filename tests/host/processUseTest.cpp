// What a process is seen to hold. Were this blind, a conduit that leaves something behind would pass for a
// clean one.

#include <filesystem>
#include <fstream>
#include <memory>
#include <vector>

#include "host/hostSystem.h"

#include "gtest/gtest.h"

namespace tsr::test {
namespace {

TEST(ProcessUse, CountsAByteForEachOfAThousandBlocks) {
    constexpr std::size_t blocks = 1000;
    std::vector<std::unique_ptr<char>> held(blocks);
    const std::int64_t before = processUse().bytes;
    for (std::unique_ptr<char>& block : held) block = std::make_unique<char>();
    EXPECT_GE(processUse().bytes, before + std::int64_t{blocks});
    held.clear();
    EXPECT_LT(processUse().bytes, before + std::int64_t{blocks});
}

TEST(ProcessUse, CountsAFileThatIsOpen) {
    const std::string name = testing::TempDir() + "/tsr-process-use";
    const std::int64_t before = processUse().handles;
    {
        const std::ofstream file(name);
        ASSERT_TRUE(file.is_open());
        EXPECT_EQ(processUse().handles, before + 1);
    }
    EXPECT_EQ(processUse().handles, before);
    std::filesystem::remove(name);
}

} // namespace
} // namespace tsr::test
