#pragma once

#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

namespace tsr::bench {

// What one session does to the world, in its order: the calls of the device, with their arguments, and the
// bytes that go to the server and come from it. The linker puts this class's functions in front of the Sync
// Manager's and of the socket's (CMakeLists.txt), for the thread that records.
class Recording {
public:
    // Records what this thread does while `session` runs.
    void record(const std::function<void()>& session);

    // Does all of it once more, against a server that listens at `port` of this machine and the handheld that
    // is attached, and looks at nothing that comes back. Raises std::runtime_error when the connection ends.
    void replay(std::uint16_t port) const;

    void add(std::function<void()> step) { steps_.push_back(std::move(step)); }

private:
    std::vector<std::function<void()>> steps_;
};

} // namespace tsr::bench
