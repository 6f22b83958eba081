#include "interchange/mailAddresses.h"

namespace tsr {

namespace {

constexpr char blanks[] = " \t\r";

std::string trimmed(const std::string& text) {
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string::npos) return {};
    return text.substr(first, text.find_last_not_of(blanks) + 1 - first);
}

// Whether the quotation mark or the angle bracket at `open` is closed in its line, so that it isn't one that
// somebody has forgotten: then no address behind it would be reached.
bool isClosed(const std::string& list, std::size_t open) {
    const bool quotes = list[open] == '"';
    const std::size_t next = list.find_first_of(quotes ? "\"\n" : "<>\n", open + 1);
    return next != std::string::npos && list[next] == (quotes ? '"' : '>');
}

} // namespace

std::vector<std::string> dividedAddresses(const std::string& list) {
    std::vector<std::string> addresses;
    const auto add = [&](std::size_t begin, std::size_t end) {
        const std::string address = trimmed(list.substr(begin, end - begin));
        if (!address.empty()) addresses.push_back(address);
    };
    std::size_t begin = 0;
    char closing = '\0'; // of the sign that is open
    for (std::size_t i = 0; i < list.size(); ++i) {
        const char c = list[i];
        if (closing != '\0') {
            if (c == closing) closing = '\0';
        } else if (c == '"' || c == '<') {
            if (isClosed(list, i)) closing = c == '<' ? '>' : c;
        } else if (c == ',' || c == '\n') {
            add(begin, i);
            begin = i + 1;
        }
    }
    add(begin, list.size());
    return addresses;
}

std::string joinedAddresses(const std::vector<std::string>& addresses, const std::string& separator) {
    std::string list;
    for (const std::string& address : addresses) list += (list.empty() ? "" : separator) + address;
    return list;
}

} // namespace tsr
