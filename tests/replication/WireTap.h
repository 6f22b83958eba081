#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <string>
#include <thread>

namespace tsr::test {

// Stands between conduits and a server on this machine, one connection at a time, and notes down all that
// passes.
class WireTap {
public:
    WireTap(); // raises std::runtime_error
    WireTap(const WireTap&) = delete;
    WireTap& operator=(const WireTap&) = delete;
    ~WireTap();

    std::uint16_t port() const { return port_; }           // for conduits
    void setServer(std::uint16_t port) { server_ = port; } // for connections from now on

    // What has passed since the last call, all connections being closed: for each run of bytes in one
    // direction a ">" (to the server) or "<", and the bytes.
    std::string take();

private:
    void serve();
    void relay(int client);

    int listener_;
    std::uint16_t port_ = 0;
    std::atomic<std::uint16_t> server_ = 0;
    std::mutex mutex_;
    std::condition_variable idle_;
    int connections_ = 0;
    std::string passed_;
    std::thread thread_;
};

} // namespace tsr::test
