#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "handheld/syncResult.h"

namespace tsr {

// Counts the calls of the Sync Manager, notes them down when asked to, and lets the ordered ones fail. A call
// that fails so does nothing but fail. Calls are numbered from 1.
class SyncCalls {
public:
    void failCall(std::uint64_t number, std::int32_t code); // the n-th call of all
    void failCall(const std::string& function, std::uint64_t number,
                  std::int32_t code);     // the n-th of that function
    void pullCable(std::uint64_t number); // that call and all behind it fail with connectionLost
    // The remote module answers so and does nothing else.
    void answerModule(std::vector<std::uint8_t> result) { moduleAnswer_ = std::move(result); }
    const std::optional<std::vector<std::uint8_t>>& moduleAnswer() const { return moduleAnswer_; }
    void mend();    // takes all orders back
    void restart(); // counts from 1 again and forgets the trace; orders stay

    std::uint64_t count() const { return count_; }
    std::uint64_t count(const std::string& function) const;

    void setTracing(bool tracing) { tracing_ = tracing; }
    // Each call as `SyncOpenDB("MemoDB", 0, 0xE0)`, with a result other than 0 behind it: ` -> 0x4003`.
    const std::vector<std::string>& trace() const { return trace_; }

    // Makes one call: `describe` gives its arguments as text, `work` does it and gives its result.
    template <typename Describe, typename Work>
    std::int32_t run(const char* function, Describe describe, Work work) {
        const std::int32_t fault = enter(function);
        const std::string call = tracing_ ? describeCall(function, describe()) : std::string();
        const std::int32_t result = fault != syncResult::success ? fault : work();
        if (tracing_) note(call, result);
        return result;
    }

private:
    std::int32_t enter(const std::string& function); // counts, and gives the code of a fault that is due
    static std::string describeCall(const std::string& function, const std::string& arguments);
    void note(const std::string& call, std::int32_t result);

    std::uint64_t count_ = 0;
    std::map<std::string, std::uint64_t> counts_;
    std::map<std::uint64_t, std::int32_t> faults_;
    std::map<std::pair<std::string, std::uint64_t>, std::int32_t> functionFaults_;
    std::optional<std::uint64_t> cablePulledAt_;
    std::optional<std::vector<std::uint8_t>> moduleAnswer_;
    bool tracing_ = false;
    std::vector<std::string> trace_;
};

} // namespace tsr
