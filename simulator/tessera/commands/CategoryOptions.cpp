#include "tessera/commands/CategoryOptions.h"

namespace tsr {

void CategoryOptions::addTo(CLI::App& command) {
    CLI::Option* category =
        command.add_option("--category", categories_, "A category that it is in, for all that it had");
    category->allow_extra_args(false)->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    command.add_flag("--no-category", none_, "Takes it out of all its categories")->excludes(category);
}

void CategoryOptions::apply(std::vector<std::string>& categories) const {
    if (none_ || !categories_.empty()) categories = categories_;
}

std::string joinedCategories(const std::vector<std::string>& categories) {
    std::string text;
    for (const std::string& category : categories) text += (text.empty() ? "" : ", ") + category;
    return text;
}

} // namespace tsr
