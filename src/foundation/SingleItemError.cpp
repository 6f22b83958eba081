#include "foundation/SingleItemError.h"

#include "foundation/messages.h"

namespace tsr {

SingleItemError::SingleItemError(Message messageId, std::uint32_t errorCode, std::string message)
    : messageId_(messageId), errorCode_(errorCode), message_(std::move(message)) {}

CountedPtr<Error> SingleItemError::clone() const { return CountedPtr<Error>(new SingleItemError(*this)); }

void SingleItemError::print(std::ostream& stream) const {
    stream << loadMessage(messageId_) << " - " << message_;
}

} // namespace tsr
