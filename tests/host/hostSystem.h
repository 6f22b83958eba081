#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

// What a program that holds the conduit does differently on each system. The conduit is the one that is
// shipped: its clock and its faults come to it through the functions of the system that it calls.

namespace tsr::test {

void useBinaryStreams(); // for messages on standard input and output

// From now on the conduit sees this time, seconds since 1970.
void setConduitClock(std::int64_t secondsSince1970);

// From now on the conduit writes its trace, or doesn't: a variable of the environment tells it, or the
// Control key.
void traceConduit(bool on);

std::filesystem::path conduitFolder(); // where it lies, with its traces, and this program

// On Windows: "no-networking" takes WSOCK32 away, "no-function NAME" a function of it, and "no-strings" the
// string table. They stay for as long as the program runs. Raises std::runtime_error for others.
void orderConduitFault(const std::string& fault);

// What this process holds.
struct ProcessUse {
    std::int64_t handles = 0; // of the system: files, sockets, events
    std::int64_t bytes = 0;   // of the heap
};
ProcessUse processUse();

} // namespace tsr::test
