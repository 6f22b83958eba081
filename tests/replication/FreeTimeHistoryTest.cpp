#include "replication/FreeTimeHistory.h"
#include "replication/historyCount.h"

namespace tsr {
namespace {

using test::FreeTimeHistory;

TEST_F(FreeTimeHistory, FreeTimeFollowsTheCalendars) {
    for (std::uint32_t seed = 1; seed <= test::historyCount(200) && !HasFailure(); ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        run(seed);
    }
}

} // namespace
} // namespace tsr
