#pragma once

#include <string>
#include <vector>

#include <CLI/CLI.hpp>

namespace tsr {

// --category for each category that a document is in from now on, and --no-category.
class CategoryOptions {
public:
    void addTo(CLI::App& command);
    void apply(std::vector<std::string>& categories) const;

private:
    std::vector<std::string> categories_;
    bool none_ = false;
};

std::string joinedCategories(const std::vector<std::string>& categories); // "Home, Shops"

} // namespace tsr
