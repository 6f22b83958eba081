#include "tessera/categories.h"

#include <algorithm>
#include <utility>

namespace tsr {

std::vector<std::string> categoriesOf(const Properties& properties) {
    const auto found = properties.find(categoryName);
    if (found == properties.end()) return {};
    std::vector<std::string> categories = found->second;
    std::erase(categories, "");
    return categories;
}

void setCategories(Properties& properties, std::vector<std::string> categories) {
    std::erase(categories, "");
    if (categories.empty()) {
        properties.erase(categoryName);
    } else {
        properties[categoryName] = std::move(categories);
    }
}

void adoptCategories(Properties& properties, const Properties& sent) {
    std::vector<std::string> known = categoriesOf(properties);
    const std::string category = firstValue(sent, categoryName);
    const auto found = std::find(known.begin(), known.end(), category);
    if (found != known.end()) {
        std::rotate(known.begin(), found, found + 1);
        properties[categoryName] = known;
    } else if (sent.contains(categoryName)) {
        properties[categoryName] = sent.at(categoryName);
    } else {
        properties.erase(categoryName);
    }
}

} // namespace tsr
