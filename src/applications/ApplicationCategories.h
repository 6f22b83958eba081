#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include "device/PalmCategories.h"
#include "device/PalmProxy.h"
#include "device/PalmRecordBuffer.h"
#include "foundation/CountedPtr.h"

namespace tsr {

// The categories of one application on their way between the handheld, where a record is in one of sixteen,
// and Notes, where an item has any number of them. The application's table is read when a conversion needs it
// first, and so once in a session at most.
class ApplicationCategories {
public:
    enum class EmptyNames {
        Skip,
        Take, // an empty name finds the first free slot
    };

    ApplicationCategories(const CountedPtr<PalmProxy>& palm, std::ostream& log) : palm_(palm), log_(log) {}

    // Always one name; it is empty for category 0, which stands for none. Raises InvalidCategory above 15.
    std::vector<std::string> names(std::uint8_t category);

    // The category of the first name that the handheld has or that a free slot can take; 0 where no name is.
    std::uint8_t category(const std::vector<std::string>& names, EmptyNames emptyNames);

    CountedPtr<PalmRecordBuffer> appInfoToWrite() const; // null unless a name was added

private:
    PalmCategories& table();

    CountedPtr<PalmProxy> palm_;
    std::ostream& log_;
    CountedPtr<PalmCategories> table_; // null until it is needed
};

} // namespace tsr
