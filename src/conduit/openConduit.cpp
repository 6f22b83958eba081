#include "conduit/openConduit.h"

#include <memory>

#include "applications/AddressReplicator.h"
#include "applications/DatebookReplicator.h"
#include "applications/FreeTimeReplicator.h"
#include "applications/MailReplicator.h"
#include "applications/MemoReplicator.h"
#include "applications/ToDoReplicator.h"
#include "conduit/Replicator.h"
#include "device/fourCharacterCode.h"

namespace tsr {

namespace {

constexpr std::int32_t unknownApplication = -1;

std::unique_ptr<Replicator> makeReplicator(std::uint32_t creator, const CountedPtr<PalmProxy>& palm) {
    switch (creator) {
    case fourCharacterCode("addr"): return std::make_unique<AddressReplicator>(palm);
    case fourCharacterCode("date"): return std::make_unique<DatebookReplicator>(palm);
    case fourCharacterCode("mail"): return std::make_unique<MailReplicator>(palm);
    case fourCharacterCode("memo"): return std::make_unique<MemoReplicator>(palm);
    case fourCharacterCode("todo"): return std::make_unique<ToDoReplicator>(palm);
    case fourCharacterCode("TSRA"): return std::make_unique<FreeTimeReplicator>(palm);
    default: return nullptr;
    }
}

ReplicationType requestedType(const SyncProperties& properties) {
    return properties.syncType == SyncProperties::slow ? ReplicationType::Slow : ReplicationType::Normal;
}

// The replicator is destroyed before the last reference to the proxy goes.
std::int32_t replicate(ProgressCallback progressCallback, const SyncProperties& properties) {
    const CountedPtr<PalmProxy> palm(new PalmProxy(progressCallback));
    const std::unique_ptr<Replicator> replicator = makeReplicator(properties.creator, palm);
    if (!replicator) return unknownApplication;
    return replicator->run(requestedType(properties));
} // NOLINT(clang-analyzer-cplusplus.NewDeleteLeaks): it does not follow the count

} // namespace

} // namespace tsr

std::int32_t TSR_PLATFORM_CALL openConduit(void(TSR_PLATFORM_CALL* progressCallback)(const char*),
                                           const tsr::SyncProperties* syncProperties) {
    try {
        return tsr::replicate(progressCallback, *syncProperties);
    } catch (...) { // the last guard: not even writing an error chain could be afforded
        return 0;
    }
}
