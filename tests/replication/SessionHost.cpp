#include "replication/SessionHost.h"

#include <cstdlib>

#include "replication/InProcessHost.h"
#include "replication/RemoteHost.h"

#include "gtest/gtest.h"

namespace tsr::test {

namespace {

std::unique_ptr<ISessionHost> makeHost() {
    const char* const command = std::getenv("TSR_HOST");
    if (command == nullptr || *command == '\0') return std::make_unique<InProcessHost>();
    return std::make_unique<RemoteHost>(command);
}

// Made for the first session, and ended while a failure still counts.
class UsualHost : public testing::Environment {
public:
    ISessionHost& get() {
        if (host_ == nullptr) host_ = makeHost();
        return *host_;
    }
    void TearDown() override { host_.reset(); }

private:
    std::unique_ptr<ISessionHost> host_;
};

UsualHost* const usual = new UsualHost;
[[maybe_unused]] const testing::Environment* const registered = testing::AddGlobalTestEnvironment(usual);
ISessionHost* chosen = nullptr;

} // namespace

ISessionHost& sessionHost() { return chosen == nullptr ? usual->get() : *chosen; }

void setSessionHost(ISessionHost* host) { chosen = host; }

} // namespace tsr::test
