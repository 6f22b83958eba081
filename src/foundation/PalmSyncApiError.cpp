#include "foundation/PalmSyncApiError.h"

#include "foundation/messages.h"

namespace tsr {

PalmSyncApiError::PalmSyncApiError(std::uint32_t code, std::string functionName)
    : code_(code), functionName_(std::move(functionName)) {}

CountedPtr<Error> PalmSyncApiError::clone() const { return CountedPtr<Error>(new PalmSyncApiError(*this)); }

void PalmSyncApiError::print(std::ostream& stream) const {
    stream << "The function " << functionName_ << "( ) failed: " << describeSyncResult(code_) << '\n';
}

} // namespace tsr
