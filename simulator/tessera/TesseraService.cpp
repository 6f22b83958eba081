#include "tessera/TesseraService.h"

#include "tessera/ConnectionLost.h"
#include "tessera/RequestRefused.h"
#include "tessera/accountRequests.h"
#include "tessera/freeTimeRequests.h"
#include "tessera/mailRequests.h"
#include "tessera/replicationRequests.h"

namespace tsr {

TesseraService::TesseraService(Store& store, Clock clock) : store_(store), clock_(std::move(clock)) {
    for (const auto* routes : {&accountRoutes(), &mailRoutes(), &freeTimeRoutes()}) {
        for (const Route& route : *routes) routes_.emplace(route.code, route);
    }
    for (const Application& application : applications()) {
        for (const Route& route : replicationRoutes(application)) routes_.emplace(route.code, route);
    }
}

void TesseraService::orderFaults(const FaultOrders& orders) {
    const std::lock_guard lock(mutex_);
    faults_ = FaultPlan(orders);
}

std::vector<std::string> TesseraService::answer(SessionState& session, const Request& request) {
    const std::lock_guard lock(mutex_);
    faults_.startRequest();
    if (faults_.failsRequest()) {
        throw RequestRefused(ResultCode::ServerFailed, "The request fails by order.");
    }
    if (!faults_.losesAnswer()) return route(session, request);
    try {
        route(session, request);
    } catch (...) { // whatever the answer would have been
    }
    throw ConnectionLost();
}

std::vector<std::string> TesseraService::route(SessionState& session, const Request& request) {
    const auto route = routes_.find(request.code);
    if (route == routes_.end()) {
        throw RequestRefused(ResultCode::UnknownRequest,
                             "This server does not know request " + std::to_string(request.code) + ".");
    }
    const RequestContext context{store_, session, clock_(), request.strings, faults_};
    if (!route->second.beforeAuthentication) context.user();
    return route->second.answer(context);
}

} // namespace tsr
