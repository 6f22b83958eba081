#pragma once

#include <stdexcept>
#include <string>

#include "tessera/ResultCode.h"

namespace tsr {

// A request that isn't served: becomes a response with this result code and message.
class RequestRefused : public std::runtime_error {
public:
    RequestRefused(ResultCode result, const std::string& message)
        : std::runtime_error(message), result_(result) {}

    ResultCode result() const { return result_; }

private:
    ResultCode result_;
};

} // namespace tsr
