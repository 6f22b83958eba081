#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <mutex>

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

    // The strings of the answer. Raises RequestRefused, or what the store raises.
    std::vector<std::string> answer(SessionState& session, const Request& request);

private:
    std::mutex mutex_; // round the store, and so round every request
    Store& store_;
    Clock clock_;
    std::map<std::uint32_t, Route> routes_;
};

} // namespace tsr
