#pragma once

#include <cstdint>
#include <string>

#include "foundation/Error.h"

namespace tsr {

// A Sync Manager call failed.
class PalmSyncApiError : public Error {
public:
    static constexpr std::uint32_t notFound = 0x4003;

    PalmSyncApiError(std::uint32_t code, std::string functionName);

    CountedPtr<Error> clone() const override;
    void print(std::ostream& stream) const override; // "The function X( ) failed: ...", with a line end

    std::uint32_t code() const { return code_; }
    const std::string& functionName() const { return functionName_; }
    bool isNotFound() const { return code_ == notFound; }

private:
    std::uint32_t code_;
    std::string functionName_;
};

} // namespace tsr
