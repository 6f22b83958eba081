#include "foundation/ServerRequestError.h"

namespace tsr {

ServerRequestError::ServerRequestError(std::uint32_t requestCode, std::uint32_t errorCode,
                                       std::string message)
    : requestCode_(requestCode), errorCode_(errorCode), message_(std::move(message)) {}

CountedPtr<Error> ServerRequestError::clone() const {
    return CountedPtr<Error>(new ServerRequestError(*this));
}

void ServerRequestError::print(std::ostream& stream) const { stream << message_; }

} // namespace tsr
