#pragma once

#include <cstdint>
#include <string>

namespace tsr {

// What tells one handheld application from another.
class ApplicationTraits {
public:
    virtual ~ApplicationTraits() = default;

    // The category under which the application's record stands in the configuration database, 0 for none.
    virtual std::int16_t configCategory() const = 0;

    std::string syncDbName; // empty, with a creator and type of 0, where the application has no sync database
    std::uint32_t syncDbCreator = 0;
    std::uint32_t syncDbType = 0;
    std::string appDbName;
    std::uint32_t appDbCreator = 0; // also the creator that openConduit is called with
    std::uint32_t appDbType = 0;
    std::string displayName; // in progress texts, in the HotSync log, and in the name of the debug log file

protected:
    ApplicationTraits() = default;
};

} // namespace tsr
