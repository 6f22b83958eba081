#include "device/PalmProxyWork.h"

#include <memory>

#include "gtest/gtest.h"

namespace tsr {
namespace {

TEST(PalmProxyWork, RunsAndEndsThroughItsBase) {
    struct Work : PalmProxyWork {
        explicit Work(int& count) : steps(count) {}
        ~Work() override { steps += 10; }
        void run() override { ++steps; }
        int& steps;
    };
    int steps = 0;
    std::unique_ptr<PalmProxyWork> work = std::make_unique<Work>(steps);
    work->run();
    EXPECT_EQ(steps, 1);
    work.reset();
    EXPECT_EQ(steps, 11);
}

} // namespace
} // namespace tsr
