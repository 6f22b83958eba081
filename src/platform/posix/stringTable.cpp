#include "platform/stringTable.h"

#include <algorithm>
#include <iterator>

namespace tsr::platform {

namespace {

struct Entry {
    std::uint32_t id;
    const char* text;
};

// In ascending order, as the list is kept.
constexpr Entry table[] = {
#define TSR_MESSAGE(name, id, text) {id, text},
#include "resources/messages.inc"
#undef TSR_MESSAGE
};

constexpr bool ascends() {
    return std::is_sorted(std::begin(table), std::end(table),
                          [](const Entry& left, const Entry& right) { return left.id < right.id; });
}
static_assert(ascends());

} // namespace

std::string loadString(std::uint32_t id) {
    const Entry* found =
        std::lower_bound(std::begin(table), std::end(table), id,
                         [](const Entry& entry, std::uint32_t wanted) { return entry.id < wanted; });
    if (found == std::end(table) || found->id != id) return {};
    return found->text;
}

} // namespace tsr::platform
