#include "foundation/CountedPtr.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

struct Counter {
    explicit Counter(int& count) : gone(count) {}
    Counter(const Counter&) = delete;
    Counter& operator=(const Counter&) = delete;
    ~Counter() { ++gone; }
    int& gone;
};

// Its destructor isn't virtual: the deleter has to be that of the class below.
struct Base {
    int value = 1;
};
struct Other {
    int more = 2;
};
struct Derived : Other, Base {
    explicit Derived(int& gone) : counter(gone) {}
    Counter counter;
};

TEST(CountedPtr, HasThreeWords) { EXPECT_EQ(sizeof(CountedPtr<int>), 3 * sizeof(void*)); }

TEST(CountedPtr, TheLastReleaseDeletes) {
    int gone = 0;
    {
        CountedPtr<Counter> first(new Counter(gone));
        {
            const CountedPtr<Counter> second = first;
            EXPECT_EQ(second, first);
        }
        EXPECT_EQ(gone, 0);
    }
    EXPECT_EQ(gone, 1);
}

TEST(CountedPtr, RunsTheDestructorOfTheClassItWasBuiltWith) {
    int gone = 0;
    {
        CountedPtr<Base> base;
        {
            const CountedPtr<Derived> derived = makeCounted<Derived>(gone);
            base = derived;
        }
        EXPECT_EQ(base->value, 1);
        EXPECT_EQ(gone, 0);
    }
    EXPECT_EQ(gone, 1);
}

TEST(CountedPtr, NullOwnsNothing) {
    const CountedPtr<int> none;
    const CountedPtr<int> fromNull = nullptr;
    const CountedPtr<int> fromPointer(static_cast<int*>(nullptr));
    EXPECT_FALSE(none);
    EXPECT_EQ(fromNull, none);
    EXPECT_EQ(fromPointer.get(), nullptr);
    const CountedPtr<int> copy = none;
    EXPECT_FALSE(copy);
}

TEST(CountedPtr, AssignmentLetsTheOldObjectGo) {
    int gone = 0;
    CountedPtr<Counter> pointer(new Counter(gone));
    const CountedPtr<Counter>& self = pointer;
    pointer = self;
    EXPECT_EQ(gone, 0);
    pointer = CountedPtr<Counter>();
    EXPECT_EQ(gone, 1);
}

TEST(CountedPtr, AMovedFromPointerIsNull) {
    int gone = 0;
    CountedPtr<Counter> first(new Counter(gone));
    const CountedPtr<Counter> second = std::move(first);
    EXPECT_FALSE(first); // NOLINT(bugprone-use-after-move): null, as it says
    EXPECT_TRUE(second);
    EXPECT_EQ(gone, 0);
}

TEST(CountedPtr, MovesIntoAPointerToTheBase) {
    int gone = 0;
    CountedPtr<Derived> first(new Derived(gone));
    {
        const CountedPtr<Base> second = std::move(first);
        EXPECT_FALSE(first); // NOLINT(bugprone-use-after-move): null, as it says
        EXPECT_EQ(second->value, 1);
        EXPECT_EQ(gone, 0);
    }
    EXPECT_EQ(gone, 1);
}

TEST(CountedPtr, ResetLetsGo) {
    int gone = 0;
    CountedPtr<Counter> pointer(new Counter(gone));
    pointer.reset();
    EXPECT_EQ(gone, 1);
    EXPECT_FALSE(pointer);
}

} // namespace
} // namespace tsr
