#include "foundation/GeneralError.h"

#include "foundation/messages.h"

namespace tsr {

GeneralError::GeneralError(Message id) : text_(new TaggedOutputStringStream) { *text_ << loadMessage(id); }

GeneralError::GeneralError(Message id, const Error& cause)
    : Error(cause.clone()), text_(new TaggedOutputStringStream) {
    *text_ << loadMessage(id);
}

CountedPtr<Error> GeneralError::clone() const { return CountedPtr<Error>(new GeneralError(*this)); }

void GeneralError::print(std::ostream& stream) const { stream << text_->str(); }

GeneralError& GeneralError::operator<<(const Tag& tag) {
    *text_ << tag;
    return *this;
}

GeneralError& GeneralError::operator<<(const std::string& value) {
    *text_ << value;
    return *this;
}

GeneralError& GeneralError::operator<<(const char* value) {
    *text_ << value;
    return *this;
}

GeneralError& GeneralError::operator<<(char value) {
    *text_ << value;
    return *this;
}

} // namespace tsr
