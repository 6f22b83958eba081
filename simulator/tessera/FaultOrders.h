#pragma once

#include <cstdint>
#include <set>
#include <string>

namespace tsr {

// What goes wrong by order, so that it can be seen what clients make of it. Everything is counted from 1
// since the orders were given, over all sessions.
struct FaultOrders {
    std::set<std::uint64_t> refusedItems{};   // of the items sent, anomalies and outgoing mail included
    std::set<std::uint64_t> failedRequests{}; // answered with an error, and not carried out
    std::set<std::uint64_t> lostAnswers{};    // carried out; then the connection ends without an answer
    std::set<std::string> refusedSubjects{};  // of outgoing mail, each time that it is sent
};

} // namespace tsr
