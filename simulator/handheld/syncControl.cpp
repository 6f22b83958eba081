#include "handheld/syncControl.h"

#include "handheld/AttachedHandheld.h"

namespace {

tsr::AttachedHandheld& attached() { return tsr::attachedHandheld(); }

std::int32_t result(bool good) { return good ? 0 : 1; }

} // namespace

void handheldAttach(tsr::Handheld* handheld) { attached().attach(*handheld); }

std::int32_t handheldOpenFolder(const char* path) { return result(attached().openFolder(path)); }

tsr::Handheld* handheldAttached() {
    tsr::SyncManager* manager = attached().manager();
    return manager ? &manager->handheld() : nullptr;
}

std::int32_t handheldEndSession() { return result(attached().endSession()); }

std::int32_t handheldDetach() { return result(attached().detach()); }

const char* handheldError() { return attached().error().c_str(); }

void handheldFailCall(std::uint64_t number, std::int32_t code) {
    if (auto* calls = attached().calls()) calls->failCall(number, code);
}

void handheldFailFunction(const char* function, std::uint64_t number, std::int32_t code) {
    if (auto* calls = attached().calls()) calls->failCall(function, number, code);
}

void handheldPullCable(std::uint64_t number) {
    if (auto* calls = attached().calls()) calls->pullCable(number);
}

void handheldAnswerModule(const void* result, std::uint32_t size) {
    const auto* bytes = static_cast<const std::uint8_t*>(result);
    if (auto* calls = attached().calls()) calls->answerModule({bytes, bytes + size});
}

void handheldMend() {
    if (auto* calls = attached().calls()) calls->mend();
}

void handheldRestartCount() {
    if (auto* calls = attached().calls()) calls->restart();
}

std::uint64_t handheldCallCount() {
    const auto* calls = attached().calls();
    return calls ? calls->count() : 0;
}

std::uint64_t handheldFunctionCallCount(const char* function) {
    const auto* calls = attached().calls();
    return calls ? calls->count(function) : 0;
}

std::uint64_t handheldOpenDatabases() {
    const auto* manager = attached().manager();
    return manager ? manager->openDatabases() : 0;
}

void handheldSetTracing(std::int32_t on) {
    if (auto* calls = attached().calls()) calls->setTracing(on != 0);
}

std::uint64_t handheldTraceCount() {
    const auto* calls = attached().calls();
    return calls ? calls->trace().size() : 0;
}

const char* handheldTraceLine(std::uint64_t index) {
    const auto* calls = attached().calls();
    return calls && index < calls->trace().size() ? calls->trace()[static_cast<std::size_t>(index)].c_str()
                                                  : nullptr;
}
