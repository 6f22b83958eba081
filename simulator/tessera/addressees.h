#pragma once

#include <string>
#include <vector>

#include "tessera/Store.h"

namespace tsr {

// Whom addresses stand for.
struct Addressees {
    struct Unknown {
        std::string address;
        std::string reason;
    };

    std::vector<User> users; // each once, in the order of the addresses
    std::vector<Unknown> unknown;
};

// An address may be a user's name, "Pat Lee" or "Pat Lee/Sales" or "CN=Pat Lee/OU=Sales", with a domain
// behind an @, or stand in "Pat Lee <address>" or <address>. It means the user of that name, and where either
// of both is a common name without more, the one user whose common name it is. Upper and lower case are one.
Addressees findAddressees(Store& store, const std::vector<std::string>& addresses);

} // namespace tsr
