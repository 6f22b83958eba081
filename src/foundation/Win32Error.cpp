#include "foundation/Win32Error.h"

#include "foundation/messages.h"
#include "platform/systemError.h"

namespace tsr {

Win32Error::Win32Error(std::string functionName)
    : code_(platform::lastError()), functionName_(std::move(functionName)) {}

CountedPtr<Error> Win32Error::clone() const { return CountedPtr<Error>(new Win32Error(*this)); }

void Win32Error::print(std::ostream& stream) const { stream << describeSystemError(code_); }

} // namespace tsr
