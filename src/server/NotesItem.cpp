#include "server/NotesItem.h"

#include "foundation/lines.h"

namespace tsr {

std::string firstValue(const NotesItem& item, const std::string& name) {
    const auto found = item.find(name);
    if (found == item.end() || found->second.empty()) return {};
    return found->second.front();
}

std::string normalizedValue(const NotesItem& item, const std::string& name) {
    return normalizeLineEnds(firstValue(item, name), '\n');
}

bool hasProperty(const NotesItem& item, const std::string& name) { return item.count(name) != 0; }

void addValue(NotesItem& item, const std::string& name, const std::string& value) {
    item[name].push_back(value);
}

} // namespace tsr
