#include "replication/DatebookHistory.h"
#include "replication/historyCount.h"

namespace tsr {
namespace {

using test::DatebookHistory;

TEST_F(DatebookHistory, MeetingsConverge) {
    for (std::uint32_t seed = 1; seed <= test::historyCount(400) && !HasFailure(); ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        run(seed);
    }
}

} // namespace
} // namespace tsr
