#include "support/testClock.h"

#include "platform/clock.h"
#include "platform/systemError.h"

namespace tsr {

namespace {

std::int64_t now = 1012998896;
std::uint32_t failure = 0;

} // namespace

namespace test {

void setClock(std::int64_t secondsSince1970) { now = secondsSince1970; }

void breakClock(std::uint32_t code) { failure = code; }

} // namespace test

namespace platform {

bool readClock(std::int64_t& secondsSince1970) {
    if (failure != 0) {
        setLastError(failure);
        return false;
    }
    secondsSince1970 = now;
    return true;
}

} // namespace platform

} // namespace tsr
