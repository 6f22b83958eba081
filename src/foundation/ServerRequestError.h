#pragma once

#include <cstdint>
#include <string>

#include "foundation/Error.h"

namespace tsr {

// The server answered a request with a result code other than 0. The connection is still in step.
class ServerRequestError : public Error {
public:
    ServerRequestError(std::uint32_t requestCode, std::uint32_t errorCode, std::string message);

    CountedPtr<Error> clone() const override;
    void print(std::ostream& stream) const override; // the server's message alone

    std::uint32_t requestCode() const { return requestCode_; }
    std::uint32_t errorCode() const { return errorCode_; }
    const std::string& message() const { return message_; }

private:
    std::uint32_t requestCode_;
    std::uint32_t errorCode_;
    std::string message_;
};

} // namespace tsr
