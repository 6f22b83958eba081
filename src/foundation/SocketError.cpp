#include "foundation/SocketError.h"

#include "foundation/messages.h"

namespace tsr {

SocketError::SocketError(std::uint32_t code, std::string functionName)
    : code_(code), functionName_(std::move(functionName)) {}

CountedPtr<Error> SocketError::clone() const { return CountedPtr<Error>(new SocketError(*this)); }

void SocketError::print(std::ostream& stream) const {
    stream << functionName_ << "( ) failed: " << describeSystemError(code_);
}

} // namespace tsr
