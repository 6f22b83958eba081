#include "applications/ApplicationCategories.h"

namespace tsr {

std::vector<std::string> ApplicationCategories::names(std::uint8_t category) {
    if (category == 0) return {std::string()};
    return {table().categoryName(category)};
}

std::uint8_t ApplicationCategories::category(const std::vector<std::string>& names, EmptyNames emptyNames) {
    for (const std::string& name : names) {
        if (name.empty() && emptyNames == EmptyNames::Skip) continue;
        const int index = table().categoryIndex(name, true);
        if (index >= 0) return static_cast<std::uint8_t>(index);
    }
    return 0;
}

CountedPtr<PalmRecordBuffer> ApplicationCategories::appInfoToWrite() const {
    if (!table_ || !table_->dirty()) return nullptr;
    return makeCounted<PalmRecordBuffer>(table_->block());
}

PalmCategories& ApplicationCategories::table() {
    if (!table_) {
        log_ << "#t Getting application database info\n";
        table_ = makeCounted<PalmCategories>(*palm_);
    }
    return *table_;
}

} // namespace tsr
