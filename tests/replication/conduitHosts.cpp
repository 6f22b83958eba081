#include "replication/conduitHosts.h"

#include <cstdlib>
#include <sstream>

namespace tsr::test {

std::vector<ConduitHost> conduitHosts() {
    const char* const named = std::getenv("TSR_HOSTS");
    if (named == nullptr || *named == '\0') return {{"this build", TSR_OUT "/conduithost"}};
    std::vector<ConduitHost> hosts;
    std::istringstream stream(named);
    for (std::string each; std::getline(stream, each, ';');) {
        const std::size_t equals = each.find('=');
        hosts.push_back({each.substr(0, equals), each.substr(equals + 1)});
    }
    return hosts;
}

} // namespace tsr::test
