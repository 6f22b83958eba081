#include "foundation/HotSyncActivity.h"

#include <utility>

#include "gtest/gtest.h"

namespace tsr {
namespace {

TEST(HotSyncActivity, HasTheCodesOfTheLogLibrary) {
    const std::pair<std::int32_t, std::int32_t> rows[] = {
        {0, 19}, // started
        {1, -1}, // a plain text
        {2, 21}, // aborted
        {3, 20}, // finished
        {4, 22}, // a warning
        {5, -1}, {-1, -1}, {19, -1},
    };
    for (const auto& [value, code] : rows) {
        EXPECT_EQ(activityCode(static_cast<HotSyncActivity>(value)), code) << value;
    }
}

} // namespace
} // namespace tsr
