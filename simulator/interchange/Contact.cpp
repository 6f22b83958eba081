#include "interchange/Contact.h"

#include <algorithm>

namespace tsr {

namespace {

constexpr std::array<const char*, phoneKinds> names = {"work",  "home", "fax",   "other",
                                                       "email", "main", "pager", "mobile"};

} // namespace

const char* phoneKindName(PhoneKind kind) { return names[static_cast<std::size_t>(kind)]; }

std::optional<PhoneKind> phoneKindOf(const std::string& name) {
    const auto found = std::find(names.begin(), names.end(), name);
    if (found == names.end()) return std::nullopt;
    return static_cast<PhoneKind>(found - names.begin());
}

std::string Contact::name() const {
    if (lastName.empty() && firstName.empty()) return company;
    return lastName + (lastName.empty() || firstName.empty() ? "" : ", ") + firstName;
}

} // namespace tsr
