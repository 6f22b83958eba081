#include "interchange/mailAddresses.h"

namespace tsr {

namespace {

constexpr char blanks[] = " \t\r";

std::string trimmed(const std::string& text) {
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string::npos) return {};
    return text.substr(first, text.find_last_not_of(blanks) + 1 - first);
}

} // namespace

std::vector<std::string> splitAddresses(const std::string& list) {
    std::vector<std::string> addresses;
    std::string address;
    bool quoted = false;
    for (std::size_t i = 0; i <= list.size(); ++i) {
        const bool atEnd = i == list.size();
        if (!atEnd && list[i] == '"') quoted = !quoted;
        // A quotation mark without another one ends with its line.
        if (atEnd || list[i] == '\n' || (list[i] == ',' && !quoted)) {
            address = trimmed(address);
            if (!address.empty()) addresses.push_back(address);
            address.clear();
            quoted = false;
        } else {
            address += list[i];
        }
    }
    return addresses;
}

std::string joinedAddresses(const std::vector<std::string>& addresses, const std::string& separator) {
    std::string list;
    for (const std::string& address : addresses) list += (list.empty() ? "" : separator) + address;
    return list;
}

} // namespace tsr
