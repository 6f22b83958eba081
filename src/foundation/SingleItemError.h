#pragma once

#include <cstdint>
#include <string>

#include "foundation/Error.h"
#include "resources/Message.h"

namespace tsr {

// A failure confined to one item. Nothing raises it at present: such failures are GeneralErrors.
class SingleItemError : public Error {
public:
    SingleItemError(Message messageId, std::uint32_t errorCode, std::string message);

    CountedPtr<Error> clone() const override;
    void print(std::ostream& stream) const override; // "<text of the message> - <message>"

    Message messageId() const { return messageId_; }
    std::uint32_t errorCode() const { return errorCode_; }
    const std::string& message() const { return message_; }

private:
    Message messageId_;
    std::uint32_t errorCode_;
    std::string message_;
};

} // namespace tsr
