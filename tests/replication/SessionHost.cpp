#include "replication/SessionHost.h"

#include <cstdlib>

#include "replication/InProcessHost.h"
#include "replication/RemoteHost.h"

namespace tsr::test {

namespace {

ISessionHost* chosen = nullptr;

std::unique_ptr<ISessionHost> makeHost() {
    const char* const command = std::getenv("TSR_HOST");
    if (command == nullptr || *command == '\0') return std::make_unique<InProcessHost>();
    return std::make_unique<RemoteHost>(command);
}

} // namespace

ISessionHost& sessionHost() {
    static const std::unique_ptr<ISessionHost> usual = makeHost();
    return chosen == nullptr ? *usual : *chosen;
}

void setSessionHost(ISessionHost* host) { chosen = host; }

} // namespace tsr::test
