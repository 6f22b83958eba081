// Holds the conduit that lies beside this program, as the HotSync manager does, for tests that run elsewhere:
// as another system's program, or in a process whose clock and memory are their own. Takes one SessionRequest
// after the other on standard input and gives a SessionAnswer for each on standard output, until the input
// ends.

#include <cstdio>
#include <exception>
#include <memory>
#include <optional>

#include "handheld/logControl.h"
#include "handheld/syncControl.h"
#include "host/HostMessage.h"
#include "host/TraceFile.h"
#include "host/hostSystem.h"
#include "hotsync/ConduitLibrary.h"
#include "replication/failedCall.h"

namespace tsr::test {
namespace {

constexpr std::uint64_t noLongerThan = 1 << 28;
constexpr std::int32_t fault = 0x4006;

std::optional<MessageBytes> readMessage() {
    std::uint8_t size[4];
    if (std::fread(size, 1, sizeof size, stdin) != sizeof size) return {};
    const std::uint32_t bytes = size[0] | size[1] << 8 | size[2] << 16 | std::uint32_t{size[3]} << 24;
    if (bytes > noLongerThan) return {};
    MessageBytes message(bytes);
    if (std::fread(message.data(), 1, bytes, stdin) != bytes) return {};
    return message;
}

void writeMessage(const MessageBytes& message) {
    std::uint8_t size[4];
    for (std::size_t i = 0; i < sizeof size; ++i)
        size[i] = static_cast<std::uint8_t>(message.size() >> 8 * i);
    std::fwrite(size, 1, sizeof size, stdout);
    std::fwrite(message.data(), 1, message.size(), stdout);
    std::fflush(stdout);
}

// The conduit's callback has no argument of its own.
std::vector<std::string>* progress = nullptr;

void noteProgress(const char* text) { progress->emplace_back(text); }

// One call of the conduit, with all that it leaves in `answer`.
void runOnce(const ConduitLibrary& conduit, const SessionRequest& request, SessionAnswer& answer) {
    answer = SessionAnswer();
    answer.handheld = request.handheld;
    handheldAttach(&answer.handheld);
    hotSyncLogClear();
    if (request.failedCall != 0) {
        handheldSetTracing(1);
        handheldFailCall(request.failedCall, fault);
    }
    const auto properties = std::make_unique<SyncProperties>();
    properties->creator = request.creator;
    properties->syncType = request.syncType;
    progress = &answer.progress;
    answer.result = conduit.openConduit()(noteProgress, properties.get());
    answer.failedCall = failedCall();
    handheldDetach();
    for (std::uint64_t index = 0; index < hotSyncLogCount(); ++index)
        answer.log.push_back(std::to_string(hotSyncLogActivity(index)) + ' ' + hotSyncLogText(index));
    hotSyncLogClear();
}

SessionAnswer runAll(const ConduitLibrary& conduit, const SessionRequest& request) {
    SessionAnswer answer;
    ProcessUse before;
    for (std::uint64_t done = 0; done < request.repeats; ++done) {
        if (done == callsThatWarmUp) before = processUse();
        runOnce(conduit, request, answer);
    }
    if (request.repeats <= callsThatWarmUp) return answer; // a count takes Wine longer than a session
    const ProcessUse after = processUse();
    answer.handlesLeft = after.handles - before.handles;
    answer.bytesLeft = after.bytes - before.bytes;
    return answer;
}

SessionAnswer runTraced(const ConduitLibrary& conduit, const SessionRequest& request) {
    TraceFile file(conduitFolder() / request.traceFile);
    SessionAnswer answer = runAll(conduit, request);
    answer.trace = file.take();
    return answer;
}

SessionAnswer serve(const ConduitLibrary& conduit, const SessionRequest& request) {
    setConduitClock(request.clock);
    for (const std::string& each : request.faults) orderConduitFault(each);
    traceConduit(!request.traceFile.empty());
    return request.traceFile.empty() ? runAll(conduit, request) : runTraced(conduit, request);
}

void serveAll(const ConduitLibrary& conduit) {
    while (const std::optional<MessageBytes> message = readMessage()) {
        SessionAnswer answer;
        try {
            answer = serve(conduit, parseRequest(*message));
        } catch (const std::exception& error) {
            answer.error = error.what();
        }
        writeMessage(toMessage(answer));
    }
}

} // namespace
} // namespace tsr::test

int main() {
    try {
        tsr::test::useBinaryStreams();
        const tsr::ConduitLibrary conduit("");
        tsr::test::serveAll(conduit);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "conduithost: %s\n", error.what());
        return 1;
    }
}
