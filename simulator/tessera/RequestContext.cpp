#include "tessera/RequestContext.h"

#include "tessera/RequestRefused.h"
#include "tessera/numbers.h"

namespace tsr {

namespace {

constexpr std::size_t maxQuotedBytes = 100;

} // namespace

std::string quotedStart(const std::string& text) {
    if (text.size() <= maxQuotedBytes) return std::string("'").append(text).append("'");
    std::size_t end = maxQuotedBytes;
    while ((text[end] & 0xC0) == 0x80) --end; // not within a character
    return std::string("'").append(text, 0, end).append("...'");
}

void RequestContext::expectStrings(std::size_t count) const {
    if (strings.size() != count) {
        throw RequestRefused(ResultCode::BadRequest, "The request has " + std::to_string(strings.size())
                                                         + " strings in the place of " + std::to_string(count)
                                                         + ".");
    }
}

void RequestContext::expectAtLeast(std::size_t count) const {
    if (strings.size() < count) {
        throw RequestRefused(ResultCode::BadRequest, "The request has " + std::to_string(strings.size())
                                                         + " strings in the place of " + std::to_string(count)
                                                         + " or more.");
    }
}

std::uint32_t RequestContext::number(std::size_t index) const {
    const std::optional<std::uint32_t> value = parseNumber(strings.at(index));
    if (!value) throw RequestRefused(ResultCode::BadRequest, quoted(index) + " is not a number.");
    return *value;
}

void RequestContext::countItem() const {
    if (faults.refusesItem()) throw RequestRefused(ResultCode::ItemRefused, "The item is refused by order.");
}

User RequestContext::user() const {
    const std::optional<User> user = session.userId ? store.findUser(*session.userId) : std::nullopt;
    if (!user) throw RequestRefused(ResultCode::NotAuthenticated, "Authenticate before making this request.");
    return *user;
}

} // namespace tsr
