#pragma once

#include <cstdint>
#include <string>

#include "foundation/Error.h"

namespace tsr {

// A call of the operating system failed. The code is the last error, taken in the constructor: build it
// directly after the failing call.
class Win32Error : public Error {
public:
    explicit Win32Error(std::string functionName);

    CountedPtr<Error> clone() const override;
    void print(std::ostream& stream) const override; // the system's text alone, without the function

    std::uint32_t code() const { return code_; }
    const std::string& functionName() const { return functionName_; }

private:
    std::uint32_t code_;
    std::string functionName_;
};

} // namespace tsr
