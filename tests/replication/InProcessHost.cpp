#include "replication/InProcessHost.h"

#include <memory>

#include "conduit/openConduit.h"
#include "handheld/logControl.h"
#include "handheld/syncControl.h"
#include "host/TraceFile.h"
#include "platform/module.h"
#include "platform/moduleName.h"
#include "replication/failedCall.h"
#include "support/environment.h"
#include "support/testClock.h"

namespace tsr::test {

namespace {

constexpr std::int32_t fault = 0x4006;

// The conduit's callback has no argument of its own.
std::vector<std::string>* progress = nullptr;

void noteProgress(const char* text) { progress->emplace_back(text); }

void callConduit(const SessionOrder& order, SessionRecord& record) {
    const auto properties = std::make_unique<SyncProperties>();
    properties->creator = order.creator;
    properties->syncType = order.slow ? SyncProperties::slow : 0;
    progress = &record.progress;
    record.result = openConduit(noteProgress, properties.get());
}

void callConduitTraced(const SessionOrder& order, SessionRecord& record) {
    const ScopedVariable on("TSR_DEBUG_LOG", "1");
    TraceFile file(platform::moduleDirectory(moduleName) + order.traceFile);
    callConduit(order, record);
    record.trace = file.take();
}

} // namespace

SessionRecord InProcessHost::run(Handheld&, const SessionOrder& order) {
    setClock(order.clock);
    hotSyncLogClear();
    if (order.failedCall != 0) {
        handheldSetTracing(1);
        handheldRestartCount();
        handheldFailCall(order.failedCall, fault);
    }
    SessionRecord record;
    if (order.traceFile.empty()) {
        callConduit(order, record);
    } else {
        callConduitTraced(order, record);
    }
    if (order.failedCall != 0) {
        handheldMend();
        record.failedCall = test::failedCall();
    }
    for (std::uint64_t index = 0; index < hotSyncLogCount(); ++index)
        record.log.push_back(std::to_string(hotSyncLogActivity(index)) + ' ' + hotSyncLogText(index));
    return record;
}

} // namespace tsr::test
