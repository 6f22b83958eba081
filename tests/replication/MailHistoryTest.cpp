#include "replication/MailHistory.h"
#include "replication/historyCount.h"

namespace tsr {
namespace {

using test::MailHistory;

TEST_F(MailHistory, MailConverges) {
    for (std::uint32_t seed = 1; seed <= test::historyCount(400) && !HasFailure(); ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        run(seed);
    }
}

} // namespace
} // namespace tsr
