#include "bench/scale/Recording.h"

#include <algorithm>
#include <arpa/inet.h>
#include <netinet/in.h>
#include <stdexcept>
#include <string>
#include <sys/socket.h>
#include <tuple>
#include <unistd.h>

#include "bench/scale/HeapCount.h"
#include "platform/syncManager.h"

namespace tsr::bench {

namespace {

using Bytes = std::vector<std::uint8_t>;

thread_local Recording* recorder = nullptr; // of this thread; null while it doesn't record

Bytes scratch(65536);        // where a replay has its answers put: no record and no block is larger
int replayedConnection = -1; // one replay at a time

int connectTo(std::uint16_t port) {
    const int socket = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(port);
    if (::connect(socket, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0)
        throw std::runtime_error("the replay finds no server");
    return socket;
}

void sendAgain(const Bytes& bytes) {
    if (::send(replayedConnection, bytes.data(), bytes.size(), MSG_NOSIGNAL)
        != static_cast<ssize_t>(bytes.size()))
        throw std::runtime_error("the replay cannot send");
}

void receiveAgain(std::size_t bytes) {
    while (bytes > 0) {
        const ssize_t count = ::recv(replayedConnection, scratch.data(), std::min(bytes, scratch.size()), 0);
        if (count <= 0) throw std::runtime_error("the replay receives less");
        bytes -= static_cast<std::size_t>(count);
    }
}

} // namespace

void Recording::record(const std::function<void()>& session) {
    recorder = this;
    session();
    recorder = nullptr;
}

void Recording::replay(std::uint16_t port) const {
    replayedConnection = connectTo(port);
    for (const auto& step : steps_) step();
    ::close(replayedConnection);
}

} // namespace tsr::bench

// In front of the functions of the Sync Manager and of the socket.

namespace {

using namespace tsr::bench;

// Makes one call of the conduit's. What the device allocates isn't the conduit's. A recorder is given first
// what makes the call once more.
template <typename Call, typename MakeStep>
auto observe(Call call, MakeStep makeStep) {
    const HeapCountPause pause;
    if (recorder != nullptr) recorder->add(makeStep());
    return call();
}

// A call with a block, which is an output too: each replay has a copy of its own.
template <typename Block>
std::int32_t observeBlock(std::int32_t (*function)(Block*), Block* block) {
    return observe([=] { return function(block); },
                   [=] {
                       return [function, original = *block] {
                           Block copy = original;
                           function(&copy);
                       };
                   });
}

// A call that fills the buffer of its block.
template <typename Block>
std::int32_t observeReading(std::int32_t (*function)(Block*), Block* block) {
    return observe([=] { return function(block); },
                   [=] {
                       return [function, original = *block] {
                           Block copy = original;
                           copy.buffer = scratch.data();
                           function(&copy);
                       };
                   });
}

std::int32_t observeHandle(std::int32_t (*function)(std::uint8_t), std::uint8_t handle) {
    return observe([=] { return function(handle); }, [=] { return [=] { function(handle); }; });
}

// A call that answers with numbers alone.
template <typename Result, typename... Numbers>
Result observeNumbers(Result (*function)(Numbers*...), Numbers*... numbers) {
    return observe([=] { return function(numbers...); },
                   [=] {
                       return [function] {
                           std::tuple<Numbers...> unread;
                           std::apply([=](Numbers&... each) { function(&each...); }, unread);
                       };
                   });
}

} // namespace

#define TSR_OBSERVED(result, name, parameters)                                                               \
    result __real_##name parameters;                                                                         \
    result __wrap_##name parameters

extern "C" {

TSR_OBSERVED(std::int32_t, SyncFindDbByTypeCreator,
             (DatabaseSearchBlock * search, DatabaseInfoBlock* found)) {
    return observe([=] { return __real_SyncFindDbByTypeCreator(search, found); },
                   [=] {
                       return [original = *search] {
                           DatabaseSearchBlock copy = original;
                           DatabaseInfoBlock unread{};
                           __real_SyncFindDbByTypeCreator(&copy, &unread);
                       };
                   });
}

TSR_OBSERVED(std::int32_t, SyncOpenDB,
             (const char* name, std::int32_t card, std::uint8_t* handle, std::uint8_t mode)) {
    return observe([=] { return __real_SyncOpenDB(name, card, handle, mode); },
                   [=] {
                       return [copy = std::string(name), card, mode] {
                           std::uint8_t unread = 0;
                           __real_SyncOpenDB(copy.c_str(), card, &unread, mode);
                       };
                   });
}

TSR_OBSERVED(std::int32_t, SyncCreateDB, (DatabaseCreateBlock * block)) {
    return observeBlock(__real_SyncCreateDB, block);
}

TSR_OBSERVED(std::int32_t, SyncCloseDBEx, (std::uint8_t handle, std::uint8_t option)) {
    return observe([=] { return __real_SyncCloseDBEx(handle, option); },
                   [=] { return [=] { __real_SyncCloseDBEx(handle, option); }; });
}

TSR_OBSERVED(std::int32_t, SyncReadRecordById, (RawRecordInfo * record)) {
    return observeReading(__real_SyncReadRecordById, record);
}

TSR_OBSERVED(std::int32_t, SyncReadRecordByIndex, (RawRecordInfo * record)) {
    return observeReading(__real_SyncReadRecordByIndex, record);
}

TSR_OBSERVED(std::int32_t, SyncReadNextRecInCategory, (RawRecordInfo * record)) {
    return observeReading(__real_SyncReadNextRecInCategory, record);
}

TSR_OBSERVED(std::int32_t, SyncReadNextModifiedRec, (RawRecordInfo * record)) {
    return observeReading(__real_SyncReadNextModifiedRec, record);
}

TSR_OBSERVED(std::int32_t, SyncWriteRec, (RawRecordInfo * record)) {
    return observe([=] { return __real_SyncWriteRec(record); },
                   [=] {
                       const std::uint8_t* const data = record->buffer;
                       return [original = *record, bytes = Bytes(data, data + record->recordSize)]() mutable {
                           RawRecordInfo copy = original;
                           copy.buffer = bytes.data();
                           __real_SyncWriteRec(&copy);
                       };
                   });
}

TSR_OBSERVED(std::int32_t, SyncDeleteRec, (RawRecordInfo * record)) {
    return observeBlock(__real_SyncDeleteRec, record);
}

TSR_OBSERVED(std::int32_t, SyncResetRecordIndex, (std::uint8_t handle)) {
    return observeHandle(__real_SyncResetRecordIndex, handle);
}

TSR_OBSERVED(std::int32_t, SyncPurgeDeletedRecs, (std::uint8_t handle)) {
    return observeHandle(__real_SyncPurgeDeletedRecs, handle);
}

TSR_OBSERVED(std::int32_t, SyncResetSyncFlags, (std::uint8_t handle)) {
    return observeHandle(__real_SyncResetSyncFlags, handle);
}

TSR_OBSERVED(std::int32_t, SyncReadDBAppInfoBlock, (std::uint8_t handle, AppInfoBlockInfo* block)) {
    return observe([=] { return __real_SyncReadDBAppInfoBlock(handle, block); },
                   [=] {
                       return [handle, original = *block] {
                           AppInfoBlockInfo copy = original;
                           copy.buffer = scratch.data();
                           __real_SyncReadDBAppInfoBlock(handle, &copy);
                       };
                   });
}

TSR_OBSERVED(std::int32_t, SyncCallRemoteModule, (RemoteModuleBlock * block)) {
    return observe([=] { return __real_SyncCallRemoteModule(block); },
                   [=] {
                       const std::uint8_t* const data = block->parameter;
                       return
                           [original = *block, bytes = Bytes(data, data + block->parameterSize)]() mutable {
                               RemoteModuleBlock copy = original;
                               copy.parameter = bytes.data();
                               copy.resultBuffer = scratch.data();
                               __real_SyncCallRemoteModule(&copy);
                           };
                   });
}

TSR_OBSERVED(std::int32_t, SyncReadSysDateTime, (std::uint32_t * time)) {
    return observeNumbers(__real_SyncReadSysDateTime, time);
}

TSR_OBSERVED(std::uint16_t, SyncGetHHOSVersion, (std::uint16_t * minor)) {
    return observeNumbers(__real_SyncGetHHOSVersion, minor);
}

TSR_OBSERVED(std::int32_t, SyncGetAPIVersion, (std::uint32_t * major, std::uint32_t* minor)) {
    return observeNumbers(__real_SyncGetAPIVersion, major, minor);
}

TSR_OBSERVED(ssize_t, send, (int socket, const void* data, std::size_t bytes, int flags)) {
    const ssize_t count = __real_send(socket, data, bytes, flags);
    const HeapCountPause pause;
    const auto* const start = static_cast<const std::uint8_t*>(data);
    if (recorder != nullptr && count > 0)
        recorder->add([copy = Bytes(start, start + count)] { sendAgain(copy); });
    return count;
}

// The pieces are those of a frame that is read: its header, which tells its length, and the rest of it.
TSR_OBSERVED(ssize_t, recv, (int socket, void* data, std::size_t bytes, int flags)) {
    const ssize_t count = __real_recv(socket, data, bytes, flags);
    const HeapCountPause pause;
    if (recorder != nullptr && count > 0)
        recorder->add([received = static_cast<std::size_t>(count)] { receiveAgain(received); });
    return count;
}

} // extern "C"
