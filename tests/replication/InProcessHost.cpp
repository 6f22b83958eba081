#include "replication/InProcessHost.h"

#include <memory>

#include "conduit/openConduit.h"
#include "handheld/logControl.h"
#include "handheld/syncControl.h"
#include "replication/failedCall.h"

namespace tsr::test {

namespace {

constexpr std::int32_t fault = 0x4006;

} // namespace

SessionRecord InProcessHost::run(Handheld&, std::uint32_t creator, bool slow, std::uint64_t failedCall) {
    hotSyncLogClear();
    if (failedCall != 0) {
        handheldSetTracing(1);
        handheldRestartCount();
        handheldFailCall(failedCall, fault);
    }
    const auto properties = std::make_unique<SyncProperties>();
    properties->creator = creator;
    properties->syncType = slow ? SyncProperties::slow : 0;
    SessionRecord record;
    record.result = openConduit(nullptr, properties.get());
    if (failedCall != 0) {
        handheldMend();
        record.failedCall = test::failedCall();
    }
    for (std::uint64_t index = 0; index < hotSyncLogCount(); ++index)
        record.log.push_back(std::to_string(hotSyncLogActivity(index)) + ' ' + hotSyncLogText(index));
    return record;
}

} // namespace tsr::test
