#include "foundation/HotSyncActivity.h"

namespace tsr {

std::int32_t activityCode(HotSyncActivity activity) {
    switch (activity) {
    case HotSyncActivity::Started: return 19;
    case HotSyncActivity::Aborted: return 21;
    case HotSyncActivity::Finished: return 20;
    case HotSyncActivity::Warning: return 22;
    case HotSyncActivity::Text: break;
    }
    return -1;
}

} // namespace tsr
