#pragma once

#include <cstdint>

namespace tsr {

// The numbered messages: each enumerator's value is its number in the table.
enum class Message : std::uint32_t {
#define TSR_MESSAGE(name, id, text) name = id,
#include "resources/messages.inc"
#undef TSR_MESSAGE
};

} // namespace tsr
