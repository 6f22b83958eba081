#include "tessera/TesseraService.h"

#include "tessera/RequestRefused.h"
#include "tessera/accountRequests.h"
#include "tessera/freeTimeRequests.h"
#include "tessera/mailRequests.h"

namespace tsr {

TesseraService::TesseraService(Store& store, Clock clock) : store_(store), clock_(std::move(clock)) {
    for (const auto* routes : {&accountRoutes(), &mailRoutes(), &freeTimeRoutes()}) {
        for (const Route& route : *routes) routes_.emplace(route.code, route);
    }
}

std::vector<std::string> TesseraService::answer(SessionState& session, const Request& request) {
    const std::lock_guard lock(mutex_);
    const auto route = routes_.find(request.code);
    if (route == routes_.end()) {
        throw RequestRefused(ResultCode::UnknownRequest,
                             "This server does not know request " + std::to_string(request.code) + ".");
    }
    const RequestContext context{store_, session, clock_(), request.strings};
    if (!route->second.beforeAuthentication) context.user();
    return route->second.answer(context);
}

} // namespace tsr
