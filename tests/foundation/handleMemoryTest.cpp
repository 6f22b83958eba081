// A handle that the system has given is closed also where there is no memory for its owner.

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <limits>
#include <new>

#include "foundation/Event.h"
#include "foundation/Thread.h"
#include "support/scriptedKernel.h"

#include "gtest/gtest.h"

namespace {

constexpr std::size_t unlimited = std::numeric_limits<std::size_t>::max();

std::size_t allocationsLeft = unlimited; // the one behind them fails, and those behind it succeed again

} // namespace

void* operator new(std::size_t bytes) {
    void* const memory = allocationsLeft-- == 0 ? nullptr : std::malloc(bytes);
    if (memory == nullptr) throw std::bad_alloc();
    return memory;
}

void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

namespace tsr {
namespace {

struct NothingToDo : Runnable {
    std::uint32_t run() override { return 0; }
};

std::ptrdiff_t callsOf(const std::string& function) {
    const auto& calls = test::ScriptedKernel::instance().calls;
    return std::count_if(calls.begin(), calls.end(),
                         [&](const std::string& call) { return call.starts_with(function); });
}

bool failsAtAllocation(std::size_t number, const std::function<void()>& work) {
    test::ScriptedKernel::instance() = test::ScriptedKernel();
    allocationsLeft = number;
    try {
        work();
        allocationsLeft = unlimited;
        return false;
    } catch (const std::bad_alloc&) {
        allocationsLeft = unlimited;
        return true;
    }
}

// How many of the failures came behind the handle, which is closed in each of them.
std::size_t failuresBehind(const std::string& function, const std::function<void()>& work) {
    std::size_t behind = 0;
    for (std::size_t number = 0; failsAtAllocation(number, work); ++number) {
        EXPECT_EQ(callsOf("closeHandle"), callsOf(function)) << number;
        behind += callsOf(function) == 1;
    }
    return behind;
}

TEST(HandleMemory, AnEventIsClosed) {
    EXPECT_GE(failuresBehind("createEvent", [] { const Event event(true); }), 2u); // its state, and the count
}

TEST(HandleMemory, AThreadIsClosed) {
    NothingToDo body;
    EXPECT_GE(failuresBehind("startThread", [&] { const Thread thread(body); }),
              3u); // and the thread's count
}

} // namespace
} // namespace tsr
