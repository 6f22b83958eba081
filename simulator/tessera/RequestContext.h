#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tessera/Store.h"

namespace tsr {

// What the server remembers of one connection. It keeps the first hundred refusals and counts the rest.
struct SessionState {
    std::optional<std::int64_t> userId; // empty until the user has authenticated
    std::vector<std::string> errors;
    std::size_t errorCount = 0;
};

// What a handler works with.
struct RequestContext {
    Store& store;
    SessionState& session;
    std::int64_t now; // seconds since 1970
    const std::vector<std::string>& strings;

    // Raises BadRequest unless the body has exactly `count` strings.
    void expectStrings(std::size_t count) const;

    // The decimal number in string `index`; raises BadRequest for anything else.
    std::uint32_t number(std::size_t index) const;

    // String `index` in quotes for a message, the start of it when it is long.
    std::string quoted(std::size_t index) const;

    // The user of the session; raises NotAuthenticated when there is none.
    User user() const;
};

// The handler of one command code; it gives the strings of the response or raises RequestRefused. Each
// application has a list of them.
struct Route {
    std::uint32_t code;
    bool beforeAuthentication; // whether it is served to somebody unknown
    std::vector<std::string> (*answer)(const RequestContext& context);
};

} // namespace tsr
