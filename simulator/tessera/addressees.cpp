#include "tessera/addressees.h"

#include <algorithm>
#include <map>
#include <set>

#include "foundation/lines.h"
#include "tessera/unicode.h"

namespace tsr {

namespace {

std::string trimmed(const std::string& text) {
    constexpr char around[] = " \t\"";
    const std::size_t first = text.find_first_not_of(around);
    if (first == std::string::npos) return {};
    return text.substr(first, text.find_last_not_of(around) - first + 1);
}

// "pat lee/sales" for "CN=Pat Lee/OU=Sales".
std::string canonicalName(const std::string& name) {
    std::string canonical;
    for (const std::string& part : splitOn(toLowerCase(name), '/')) {
        const std::string value = trimmed(part.substr(part.find('=') + 1)); // all of it without one
        canonical += (canonical.empty() ? "" : "/") + value;
    }
    return canonical;
}

std::string commonName(const std::string& canonical) { return canonical.substr(0, canonical.find('/')); }

// The names that an address may mean, the likeliest first.
std::vector<std::string> namesOf(const std::string& address) {
    std::vector<std::string> names{address};
    const std::size_t bracket = address.find('<');
    if (bracket != std::string::npos) {
        names.push_back(address.substr(0, bracket));
        names.push_back(address.substr(bracket + 1, address.find('>', bracket) - bracket - 1));
    }
    for (std::size_t i = 0, count = names.size(); i < count; ++i) {
        const std::size_t domain = names[i].find('@');
        if (domain != std::string::npos) names.push_back(names[i].substr(0, domain));
    }
    for (std::string& name : names) name = canonicalName(name);
    std::erase(names, "");
    return names;
}

class Directory {
public:
    explicit Directory(const std::vector<User>& users) {
        for (const User& user : users) {
            const std::string name = canonicalName(user.name);
            byName_[name].push_back(&user);
            byCommonName_[commonName(name)].push_back(&user);
        }
    }

    std::vector<const User*> find(const std::string& address) const {
        for (const std::string& name : namesOf(address)) {
            const auto exact = byName_.find(name);
            if (exact != byName_.end()) return exact->second;
            const auto common = byCommonName_.find(commonName(name));
            if (common == byCommonName_.end()) continue;
            std::vector<const User*> users = common->second;
            if (name != commonName(name)) std::erase_if(users, hasMoreThanACommonName);
            if (!users.empty()) return users;
        }
        return {};
    }

private:
    static bool hasMoreThanACommonName(const User* user) {
        return canonicalName(user->name).find('/') != std::string::npos;
    }

    std::map<std::string, std::vector<const User*>> byName_;
    std::map<std::string, std::vector<const User*>> byCommonName_;
};

} // namespace

Addressees findAddressees(Store& store, const std::vector<std::string>& addresses) {
    const std::vector<User> users = store.users();
    const Directory directory(users);
    Addressees addressees;
    std::set<std::int64_t> seen;
    for (const std::string& address : addresses) {
        const auto found = directory.find(address);
        if (found.empty()) addressees.unknown.push_back({address, "there is no user of this name"});
        if (found.size() > 1) addressees.unknown.push_back({address, "several users have this name"});
        if (found.size() == 1 && seen.insert(found[0]->id).second) addressees.users.push_back(*found[0]);
    }
    return addressees;
}

} // namespace tsr
