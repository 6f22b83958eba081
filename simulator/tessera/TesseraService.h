#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <mutex>

#include "tessera/FaultPlan.h"
#include "tessera/Request.h"
#include "tessera/Route.h"
#include "tessera/Store.h"

namespace tsr {

// The server without its sockets: answers the requests of many sessions over one store, one request at a
// time. Sessions may live on threads of their own.
class TesseraService {
public:
    using Clock = std::function<std::int64_t()>; // seconds since 1970

    TesseraService(Store& store, Clock clock); // keeps the reference

    void orderFaults(const FaultOrders& orders); // replaces earlier ones, and counts anew

    // The strings of the answer. Raises RequestRefused, what the store raises, or ConnectionLost by order.
    std::vector<std::string> answer(SessionState& session, const Request& request);

private:
    std::vector<std::string> route(SessionState& session, const Request& request);

    std::mutex mutex_; // round the store, and so round every request
    Store& store_;
    Clock clock_;
    FaultPlan faults_;
    std::map<std::uint32_t, Route> routes_;
};

} // namespace tsr
