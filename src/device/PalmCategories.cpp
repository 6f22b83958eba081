#include "device/PalmCategories.h"

#include <algorithm>

#include "foundation/GeneralError.h"

namespace tsr {

namespace {

constexpr std::size_t longestName = 15; // characters, without the NUL

constexpr std::size_t offsetOf(std::size_t slot) { return 2 + 16 * slot; }

} // namespace

PalmCategories::PalmCategories(PalmProxy& palm) {
    palm.readAppInfoBlock(block_);
    for (std::size_t slot = 0; slot < slots; ++slot) {
        names_[slot] = block_.readFixedString(offsetOf(slot), longestName);
    }
}

const std::string& PalmCategories::categoryName(std::uint32_t index) const {
    if (index >= slots) throw GeneralError(Message::InvalidCategory) << Tag('c') << index;
    return names_[index];
}

int PalmCategories::categoryIndex(const std::string& name, bool create) {
    if (name.size() > longestName) return -1;
    auto found = std::find(names_.begin(), names_.end(), name);
    if (found == names_.end()) {
        if (!create) return -1;
        found = std::find(names_.begin(), names_.end(), std::string());
        if (found == names_.end()) return -1;
        *found = name;
        block_.putString(name, offsetOf(static_cast<std::size_t>(found - names_.begin())));
        dirty_ = true;
    }
    return static_cast<int>(found - names_.begin());
}

} // namespace tsr
