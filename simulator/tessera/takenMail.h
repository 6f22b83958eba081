#pragma once

#include <string>
#include <vector>

#include "tessera/RequestContext.h"

namespace tsr {

// The request that sends one message: the mail database, the document, the folder, "0", and the properties.
// Without an identity it is new. Answered with document and sequence number.
//
// What the handheld has changed is taken where it was asked for. A version that can't replace that of Notes
// becomes a message of its own, and the handheld receives both.
std::vector<std::string> takeMail(const RequestContext& context);

} // namespace tsr
