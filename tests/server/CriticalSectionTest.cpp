#include "server/CriticalSection.h"

#include <thread>
#include <vector>

#include "gtest/gtest.h"

namespace tsr {
namespace {

TEST(CriticalSection, LetsOneThreadInAtATime) {
    CriticalSection section;
    int count = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (int j = 0; j < 10000; ++j) {
                const CriticalSectionGuard guard(section);
                ++count;
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(count, 40000);
}

TEST(CriticalSection, MayBeEnteredAgainByItsHolder) {
    CriticalSection section;
    const CriticalSectionGuard outer(section);
    const CriticalSectionGuard inner(section);
    SUCCEED();
}

} // namespace
} // namespace tsr
