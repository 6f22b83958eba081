#pragma once

#include <deque>
#include <string>

#include "tessera/Application.h"
#include "tessera/Exchange.h"

namespace tsr {

// The exchanges of one session, each under the token that its client knows it by. A client works on one after
// the other, so that of many the oldest are forgotten.
class Exchanges {
public:
    std::string add(const Application& application, Exchange exchange); // gives its token

    // Null when the token is another application's or nobody's.
    Exchange* find(const Application& application, const std::string& token);

    // The newest one in which the handheld has changed this item, for requests without a token; or null.
    Exchange* findModified(const Application& application, const std::string& unid);

private:
    struct Entry {
        std::string token;
        const Application* application;
        Exchange exchange;
    };

    std::deque<Entry> entries_;
    std::size_t added_ = 0;
};

} // namespace tsr
