#include "replication/RemoteHost.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

#include "conduit/SyncProperties.h"

#include "gtest/gtest.h"

namespace tsr::test {

namespace {

constexpr std::size_t sizeBytes = 4; // in front of a message

// The C library's cache of freed blocks, which a program's heap shows as in use, is off.
const std::string environment = "GLIBC_TUNABLES=glibc.malloc.tcache_count=0 ";

class Pipe {
public:
    // Another program that is started meanwhile must not hold the ends.
    Pipe() {
        if (pipe2(ends_.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe can be made");
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;
    ~Pipe() {
        for (const int end : ends_) {
            if (end >= 0) close(end);
        }
    }

    int reading() const { return ends_[0]; }
    int writing() const { return ends_[1]; }
    int takeReading() { return std::exchange(ends_[0], -1); }
    int takeWriting() { return std::exchange(ends_[1], -1); }

private:
    std::array<int, 2> ends_{-1, -1};
};

// Databases that stay keep their place: tests hold them over a session.
void take(Handheld& handheld, Handheld&& after) {
    std::erase_if(handheld.databases,
                  [&after](const auto& each) { return !after.databases.contains(each.first); });
    for (auto& [name, database] : after.databases) {
        const auto there = handheld.databases.find(name);
        if (there == handheld.databases.end()) {
            handheld.databases.emplace(name, std::move(database));
        } else {
            there->second = std::move(database);
        }
    }
    handheld.preferences = std::move(after.preferences);
}

} // namespace

RemoteHost::RemoteHost(const std::string& command) : command_(command) {
    std::signal(SIGPIPE, SIG_IGN); // a program that ends is told by the failed write
    Pipe toProgram;
    Pipe fromProgram;
    const std::string line = environment + "exec " + command; // behind the fork no memory may be asked for
    process_ = fork();
    if (process_ < 0) throw std::runtime_error("no process can be made for " + command);
    if (process_ == 0) {
        dup2(toProgram.reading(), STDIN_FILENO);
        dup2(fromProgram.writing(), STDOUT_FILENO);
        execl("/bin/sh", "sh", "-c", line.c_str(), nullptr);
        _exit(127);
    }
    input_ = toProgram.takeWriting();
    output_ = fromProgram.takeReading();
}

// A conduit that does harm as it is unloaded is told by the status alone.
RemoteHost::~RemoteHost() {
    close(input_);
    close(output_);
    int status = 0;
    while (waitpid(process_, &status, 0) < 0 && errno == EINTR) continue;
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << command_ << " ended with status " << status;
}

SessionRecord RemoteHost::run(Handheld& handheld, const SessionOrder& order) {
    SessionRequest request;
    request.creator = order.creator;
    request.syncType = order.slow ? SyncProperties::slow : 0;
    request.clock = order.clock;
    request.failedCall = order.failedCall;
    request.traceFile = order.traceFile;
    request.handheld = handheld;
    SessionAnswer answer = ask(request);
    take(handheld, std::move(answer.handheld));
    SessionRecord record;
    record.result = answer.result;
    record.log = std::move(answer.log);
    record.progress = std::move(answer.progress);
    record.failedCall = std::move(answer.failedCall);
    record.trace = std::move(answer.trace);
    return record;
}

SessionAnswer RemoteHost::ask(const SessionRequest& request) {
    send(toMessage(request));
    SessionAnswer answer = parseAnswer(receive());
    if (!answer.error.empty()) throw std::runtime_error(command_ + ": " + answer.error);
    return answer;
}

void RemoteHost::send(const MessageBytes& message) {
    MessageBytes framed(sizeBytes + message.size());
    for (std::size_t i = 0; i < sizeBytes; ++i)
        framed[i] = static_cast<std::uint8_t>(message.size() >> 8 * i);
    std::copy(message.begin(), message.end(), framed.begin() + sizeBytes);
    for (std::size_t sent = 0; sent < framed.size();) {
        const ssize_t count = write(input_, framed.data() + sent, framed.size() - sent);
        if (count < 0 && errno != EINTR) throw std::runtime_error(command_ + " takes nothing");
        if (count > 0) sent += static_cast<std::size_t>(count);
    }
}

MessageBytes RemoteHost::receive() {
    const auto receiveBytes = [this](std::size_t size) {
        MessageBytes bytes(size);
        for (std::size_t received = 0; received < size;) {
            const ssize_t count = read(output_, bytes.data() + received, size - received);
            if (count == 0 || (count < 0 && errno != EINTR))
                throw std::runtime_error(command_ + " gives no answer");
            if (count > 0) received += static_cast<std::size_t>(count);
        }
        return bytes;
    };
    std::size_t size = 0;
    const MessageBytes header = receiveBytes(sizeBytes);
    for (std::size_t i = header.size(); i > 0; --i) size = size << 8 | header[i - 1];
    return receiveBytes(size);
}

} // namespace tsr::test
