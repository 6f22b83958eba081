#pragma once

#include <cstdint>

namespace tsr::test {

// Sets the clock that the code under test reads. It stands still at 2002-02-06 12:34:56 UTC until it is set.
void setClock(std::int64_t secondsSince1970);

// From now on reading the clock fails with the platform error `code`; 0 mends it.
void breakClock(std::uint32_t code);

} // namespace tsr::test
