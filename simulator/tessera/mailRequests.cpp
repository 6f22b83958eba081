#include "tessera/mailRequests.h"

namespace tsr {

namespace {

// One pair: the title of the database and its identity.
std::vector<std::string> findMailDatabase(const RequestContext& context) {
    context.expectStrings(0);
    const UserDatabase database = context.store.mailDatabase(context.user().id);
    return {database.title, database.dbid};
}

} // namespace

const std::vector<Route>& mailRoutes() {
    static const std::vector<Route> routes{{324, false, findMailDatabase}};
    return routes;
}

} // namespace tsr
