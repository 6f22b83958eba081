#include "handheld/SyncCalls.h"

#include <cstdio>

namespace tsr {

void SyncCalls::failCall(std::uint64_t number, std::int32_t code) { faults_[number] = code; }

void SyncCalls::failCall(const std::string& function, std::uint64_t number, std::int32_t code) {
    functionFaults_[{function, number}] = code;
}

void SyncCalls::pullCable(std::uint64_t number) { cablePulledAt_ = number; }

void SyncCalls::mend() {
    faults_.clear();
    functionFaults_.clear();
    cablePulledAt_.reset();
    moduleAnswer_.reset();
}

void SyncCalls::restart() {
    count_ = 0;
    counts_.clear();
    trace_.clear();
}

std::uint64_t SyncCalls::count(const std::string& function) const {
    auto found = counts_.find(function);
    return found == counts_.end() ? 0 : found->second;
}

std::int32_t SyncCalls::enter(const std::string& function) {
    const std::uint64_t number = ++count_;
    const std::uint64_t functionNumber = ++counts_[function];
    if (cablePulledAt_ && number >= *cablePulledAt_) return syncResult::connectionLost;
    if (auto fault = faults_.find(number); fault != faults_.end()) return fault->second;
    auto fault = functionFaults_.find({function, functionNumber});
    return fault == functionFaults_.end() ? syncResult::success : fault->second;
}

std::string SyncCalls::describeCall(const std::string& function, const std::string& arguments) {
    return function + "(" + arguments + ")";
}

void SyncCalls::note(const std::string& call, std::int32_t result) {
    char text[16] = "";
    if (result != syncResult::success)
        std::snprintf(text, sizeof text, " -> 0x%X", static_cast<unsigned>(result));
    trace_.push_back(call + text);
}

} // namespace tsr
