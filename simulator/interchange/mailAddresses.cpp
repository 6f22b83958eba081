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

std::vector<std::string> dividedAddresses(const std::string& list) {
    std::vector<std::string> addresses;
    std::string address;
    bool quoted = false;
    bool bracketed = false;
    for (const char c : list + '\n') {
        if (c != '\n' && (c != ',' || quoted || bracketed)) {
            if (c == '"') quoted = !quoted;
            if (c == '<' || c == '>') bracketed = c == '<';
            address += c;
            continue;
        }
        address = trimmed(address);
        if (!address.empty()) addresses.push_back(address);
        address.clear();
        quoted = bracketed = false; // what was left open ends with its line
    }
    return addresses;
}

std::string joinedAddresses(const std::vector<std::string>& addresses, const std::string& separator) {
    std::string list;
    for (const std::string& address : addresses) list += (list.empty() ? "" : separator) + address;
    return list;
}

} // namespace tsr
