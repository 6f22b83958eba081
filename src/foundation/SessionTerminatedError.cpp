#include "foundation/SessionTerminatedError.h"

#include "foundation/messages.h"

namespace tsr {

SessionTerminatedError::SessionTerminatedError(Message messageId, const Error& cause)
    : Error(cause.clone()), messageId_(messageId) {}

CountedPtr<Error> SessionTerminatedError::clone() const {
    return CountedPtr<Error>(new SessionTerminatedError(*this));
}

void SessionTerminatedError::print(std::ostream& stream) const { stream << loadMessage(messageId_); }

} // namespace tsr
