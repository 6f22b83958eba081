#pragma once

#include <string>
#include <vector>

namespace tsr::test {

// A program that holds a build of the conduit (see host/conduithost.cpp).
struct ConduitHost {
    std::string name;
    std::string command; // with its arguments, for the shell
};

// Those that the variable TSR_HOSTS names, as "name=command;name=command"; without it the one of this build.
std::vector<ConduitHost> conduitHosts();

} // namespace tsr::test
