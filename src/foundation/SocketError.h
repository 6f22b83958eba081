#pragma once

#include <cstdint>
#include <string>

#include "foundation/Error.h"

namespace tsr {

// A socket call failed. `code` is the socket layer's last error, taken directly after the call.
class SocketError : public Error {
public:
    SocketError(std::uint32_t code, std::string functionName);

    CountedPtr<Error> clone() const override;
    void print(std::ostream& stream) const override; // "X( ) failed: <text of the system>"

    std::uint32_t code() const { return code_; }
    const std::string& functionName() const { return functionName_; }

private:
    std::uint32_t code_;
    std::string functionName_;
};

} // namespace tsr
