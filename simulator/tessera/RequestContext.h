#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tessera/FaultPlan.h"
#include "tessera/SessionState.h"
#include "tessera/Store.h"

namespace tsr {

// `text` in quotes for a message, the start of it when it is long.
std::string quotedStart(const std::string& text);

// What a handler works with.
struct RequestContext {
    Store& store;
    SessionState& session;
    std::int64_t now; // seconds since 1970
    const std::vector<std::string>& strings;
    FaultPlan& faults;

    // Raises BadRequest unless the body has exactly `count` strings.
    void expectStrings(std::size_t count) const;
    void expectAtLeast(std::size_t count) const;

    // The decimal number in string `index`; raises BadRequest for anything else.
    std::uint32_t number(std::size_t index) const;

    std::string quoted(std::size_t index) const { return quotedStart(strings.at(index)); }

    // Counts an item that was sent; raises ItemRefused when it is to be refused.
    void countItem() const;

    // The user of the session; raises NotAuthenticated when there is none.
    User user() const;
};

} // namespace tsr
