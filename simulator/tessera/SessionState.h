#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "tessera/Exchanges.h"

namespace tsr {

// What the server remembers of one connection. It keeps the first hundred refusals and counts the rest.
struct SessionState {
    std::optional<std::int64_t> userId; // empty until the user has authenticated
    std::vector<std::string> errors;
    std::size_t errorCount = 0;
    Exchanges exchanges;
    std::set<std::pair<std::int64_t, std::string>> newDocuments{}; // database and Unid of items that came new
    std::optional<std::pair<std::int64_t, std::string>> sentMail{}; // the last, until the client goes on
    std::optional<std::int64_t> outbox{}; // database of the mail that is being sent off, until a refusal
};

} // namespace tsr
