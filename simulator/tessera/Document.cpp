#include "tessera/Document.h"

#include <utility>

namespace tsr {

std::vector<std::string> filledValues(const Properties& properties, const std::string& name) {
    const auto found = properties.find(name);
    if (found == properties.end()) return {};
    std::vector<std::string> values = found->second;
    std::erase(values, "");
    return values;
}

void setFilled(Properties& properties, const std::string& name, std::vector<std::string> values) {
    std::erase(values, "");
    properties.erase(name);
    if (!values.empty()) properties[name] = std::move(values);
}

} // namespace tsr
