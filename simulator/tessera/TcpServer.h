#pragma once

#include <cstdint>
#include <list>
#include <string>
#include <thread>
#include <vector>

#include "tessera/Descriptor.h"
#include "tessera/TcpConnection.h"

struct pollfd;

namespace tsr {

// Carries the service over TCP. One thread looks after all connections and waits for none of them, so that
// idle, slow and broken clients cost the others nothing. Above the limit new clients wait until another one
// leaves.
class TcpServer {
public:
    static constexpr std::size_t defaultMaxConnections = 500;

    // Binds and listens; port 0 takes a free one. Raises TesseraError.
    TcpServer(TesseraService& service, const std::string& address, std::uint16_t port,
              std::size_t maxConnections = defaultMaxConnections);
    ~TcpServer(); // stops

    std::string address() const; // with the actual port: "127.0.0.1:4711"
    std::uint16_t port() const;

    void start(); // serves on a thread of its own
    void stop();  // ends that thread, closes all connections; may be called twice

private:
    void serve();
    std::vector<pollfd> polled() const;
    void acceptClient();
    void dropFinished();

    TesseraService& service_;
    std::size_t maxConnections_;
    Descriptor listener_;
    Descriptor wakeUp_; // readable as soon as the thread is to end
    bool acceptFailed_ = false;
    std::list<TcpConnection> connections_; // the thread's own
    std::thread thread_;
};

} // namespace tsr
