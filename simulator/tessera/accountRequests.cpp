#include "tessera/accountRequests.h"

#include "foundation/hexadecimal.h"
#include "tessera/RequestRefused.h"
#include "tessera/mailAccess.h"
#include "tessera/passwords.h"

namespace tsr {

namespace {

constexpr char serverName[] = "Tessera";

// The first string says that a person was found; with no name behind it there is none.
std::vector<std::string> findUserName(const RequestContext& context) {
    context.expectStrings(0);
    const std::optional<User> user = context.store.defaultUser();
    if (!user) return {"P", serverName};
    return {"P", serverName, user->name};
}

// Of a password that nobody has. It is checked in the place of an unknown user's, so that the answer takes as
// long as for one who is known.
constexpr char hashOfNobody[] =
    "$argon2id$v=19$m=65536,t=2,p=1$Tk5Sq3kwjhQECjDxOvhGyQ$mswttB+76XRhhQTQyApvOQUhEDwPDwwetyW2/X0PdKE";

// Device time, user name, password, version, five strings about the client and its device, and the screen's
// size.
std::vector<std::string> authenticate(const RequestContext& context) {
    context.session.userId.reset();
    context.expectStrings(10);
    context.number(0);
    const std::optional<User> user = context.store.findUser(context.strings[1]);
    const std::string hash = user ? context.store.passwordHash(user->id) : hashOfNobody;
    if (!passwordMatches(hash, context.strings[2]) || !user) {
        throw RequestRefused(ResultCode::AuthenticationFailed, "The user name or the password is wrong.");
    }
    context.session.userId = user->id;
    return {};
}

std::vector<std::string> timeZone(const RequestContext& context) {
    context.expectStrings(0);
    return {binaryToHex(context.user().zone.block())};
}

// The number of errors, then those that were kept.
std::vector<std::string> sessionErrors(const RequestContext& context) {
    context.expectStrings(0);
    std::vector<std::string> strings{std::to_string(context.session.errorCount)};
    strings.insert(strings.end(), context.session.errors.begin(), context.session.errors.end());
    return strings;
}

// Ends the session; the connection itself is the client's to close, and he may authenticate anew. Before he
// closes he has noted the identities that he was given.
std::vector<std::string> closeSession(const RequestContext& context) {
    context.expectStrings(0);
    endOutbox(context); // where sending was all that there was to do
    SqliteTransaction transaction = context.store.transaction();
    for (const auto& [databaseId, unid] : context.session.newDocuments)
        context.store.confirm(databaseId, unid);
    transaction.commit();
    context.session = SessionState();
    return {};
}

} // namespace

const std::vector<Route>& accountRoutes() {
    static const std::vector<Route> routes{
        {1, true, authenticate},  {3, true, findUserName},     {7, false, timeZone},
        {19, true, closeSession}, {200, false, sessionErrors},
    };
    return routes;
}

} // namespace tsr
