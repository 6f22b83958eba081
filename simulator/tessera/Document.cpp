#include "tessera/Document.h"

namespace tsr {

std::string firstValue(const Properties& properties, const std::string& name) {
    const auto found = properties.find(name);
    return found == properties.end() || found->second.empty() ? std::string() : found->second.front();
}

} // namespace tsr
