#include "records/InfoBlock.h"

#include <algorithm>

#include "foundation/messages.h"

namespace tsr {

namespace {

constexpr char unidKey[] = "UNID";

bool isLetterOrDigit(char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

struct Entry {
    std::string key;
    std::string value;
};

// One entry, of which only letters and digits count; line feeds between entries are none.
Entry parseEntry(const std::string& text, std::size_t begin, std::size_t end) {
    Entry entry;
    bool inValue = false;
    for (std::size_t i = begin; i < end; ++i) {
        if (text[i] == ':') inValue = true;
        if (isLetterOrDigit(text[i])) (inValue ? entry.value : entry.key) += text[i];
    }
    return entry;
}

std::string findUnid(const std::string& text) {
    const std::size_t begin = text.find(loadMessage(Message::InfoBlockBegin));
    if (begin == std::string::npos) return {};
    std::size_t position = text.find('\n', begin);
    if (position == std::string::npos) return {};
    const std::size_t end = text.find(loadMessage(Message::InfoBlockEnd), position);
    if (end == std::string::npos) return {};
    std::string unid;
    while (position < end) {
        const std::size_t entryEnd = std::min(text.find(';', position), end);
        const Entry entry = parseEntry(text, position, entryEnd);
        if (entry.key == unidKey) unid = entry.value;
        position = entryEnd + 1;
    }
    return unid;
}

std::string signedBody(const std::string& text, std::size_t quote, const std::string& signature) {
    if (signature.empty()) return text;
    if (quote == std::string::npos) return text + "\n\n" + signature;
    return text.substr(0, quote) + "\n\n" + signature + "\n\n" + text.substr(quote);
}

} // namespace

void InfoBlock::addValue(const std::string& key, const std::string& value) {
    if (!value.empty()) values_[key].push_back(value);
}

std::string InfoBlock::render(const std::string& text) const {
    std::string result = text + "\n\n\n\n\n\n" + loadMessage(Message::InfoBlockBegin) + '\n';
    for (const auto& [key, values] : values_) {
        for (const std::string& value : values) result += key + ':' + value + ";\n";
    }
    return result + loadMessage(Message::InfoBlockEnd) + '\n';
}

ParsedBody parseInfoBlock(const std::string& text, const std::string& quoteMark,
                          const std::string& signature) {
    const std::string unid = findUnid(text);
    const std::size_t quote = text.find(quoteMark);
    if (!unid.empty()) return {text.substr(0, quote), unid};
    return {signedBody(text, quote, signature), {}};
}

} // namespace tsr
