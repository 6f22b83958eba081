#include "tessera/User.h"

#include "tessera/TesseraError.h"
#include "tessera/unicode.h"

namespace tsr {

namespace {

constexpr std::size_t maxNameBytes = 255;
constexpr int minutesPerDay = 24 * 60;

} // namespace

void checkUser(const User& user) {
    if (user.name.empty()) throw TesseraError("a user needs a name");
    if (user.name.size() > maxNameBytes) throw TesseraError("the user's name is too long");
    if (!isPlainText(user.name) || user.name.find('\n') != std::string::npos) {
        throw TesseraError("the user's name has characters that cannot be shown");
    }
    const WorkingHours& hours = user.hours;
    if (hours.startMinute < 0 || hours.startMinute >= hours.endMinute || hours.endMinute > minutesPerDay) {
        throw TesseraError("working hours must start and end on one day, and end after they start");
    }
}

} // namespace tsr
