#pragma once

#include <sys/types.h>

#include "host/HostMessage.h"
#include "replication/SessionHost.h"

namespace tsr::test {

// A program that holds the conduit, started once and asked for one session after the other.
class RemoteHost : public ISessionHost {
public:
    explicit RemoteHost(const std::string& command); // for the shell; raises std::runtime_error
    RemoteHost(const RemoteHost&) = delete;
    RemoteHost& operator=(const RemoteHost&) = delete;
    ~RemoteHost() override; // ends the program; another status than 0 fails the test

    SessionRecord run(Handheld& handheld, const SessionOrder& order) override;

    // Raises std::runtime_error where there is no answer, or one about an error.
    SessionAnswer ask(const SessionRequest& request);

private:
    void send(const MessageBytes& message);
    MessageBytes receive();

    std::string command_;
    pid_t process_ = -1;
    int input_ = -1; // of the program
    int output_ = -1;
};

} // namespace tsr::test
