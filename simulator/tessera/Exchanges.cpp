#include "tessera/Exchanges.h"

#include <algorithm>
#include <utility>

namespace tsr {

namespace {

constexpr std::size_t maxExchanges = 16;

} // namespace

std::string Exchanges::add(const Application& application, Exchange exchange) {
    if (entries_.size() == maxExchanges) entries_.pop_front();
    const std::string token = "exchange " + std::to_string(++added_);
    entries_.push_back({token, &application, std::move(exchange)});
    return token;
}

Exchange* Exchanges::find(const Application& application, const std::string& token) {
    for (Entry& entry : entries_) {
        if (entry.token == token && entry.application == &application) return &entry.exchange;
    }
    return nullptr;
}

Exchange* Exchanges::findModified(const Application& application, const std::string& unid) {
    const auto found = std::find_if(entries_.rbegin(), entries_.rend(), [&](const Entry& entry) {
        return entry.application == &application && entry.exchange.modified.contains(unid);
    });
    return found == entries_.rend() ? nullptr : &found->exchange;
}

} // namespace tsr
