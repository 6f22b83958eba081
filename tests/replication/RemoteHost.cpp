#include "replication/RemoteHost.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

#include "conduit/SyncProperties.h"
#include "replication/Office.h"

namespace tsr::test {

namespace {

constexpr std::size_t sizeBytes = 4; // in front of a message

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
    int toProgram[2];
    int fromProgram[2];
    // Another program that is started meanwhile must not hold the ends.
    if (pipe2(toProgram, O_CLOEXEC) != 0 || pipe2(fromProgram, O_CLOEXEC) != 0)
        throw std::runtime_error("no pipe can be made");
    process_ = fork();
    if (process_ == 0) {
        dup2(toProgram[0], STDIN_FILENO);
        dup2(fromProgram[1], STDOUT_FILENO);
        execl("/bin/sh", "sh", "-c", ("exec " + command).c_str(), nullptr);
        _exit(127);
    }
    close(toProgram[0]);
    close(fromProgram[1]);
    input_ = toProgram[1];
    output_ = fromProgram[0];
}

RemoteHost::~RemoteHost() {
    close(input_);
    close(output_);
    waitpid(process_, nullptr, 0);
}

SessionRecord RemoteHost::run(Handheld& handheld, std::uint32_t creator, bool slow,
                              std::uint64_t failedCall) {
    SessionRequest request;
    request.creator = creator;
    request.syncType = slow ? SyncProperties::slow : 0;
    request.clock = noon;
    request.failedCall = failedCall;
    request.handheld = handheld;
    SessionAnswer answer = ask(request);
    take(handheld, std::move(answer.handheld));
    return {answer.result, std::move(answer.log), std::move(answer.failedCall)};
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
