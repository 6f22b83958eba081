#pragma once

#include "foundation/Error.h"
#include "resources/Message.h"

namespace tsr {

// A phase of the session failed, which ends the session. The cause tells why.
class SessionTerminatedError : public Error {
public:
    SessionTerminatedError(Message messageId, const Error& cause); // keeps a clone of `cause`

    CountedPtr<Error> clone() const override;
    void print(std::ostream& stream) const override; // the text as it stands in the table

    Message messageId() const { return messageId_; }

private:
    Message messageId_;
};

} // namespace tsr
