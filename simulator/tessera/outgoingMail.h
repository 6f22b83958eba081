#pragma once

#include <string>
#include <vector>

#include "tessera/RequestContext.h"

namespace tsr {

// The request that sends one mail off: the mail database, the options, the document that the mail answers or
// zeros, "0", and the properties. It is delivered at once, and a copy is kept in the sender's folder "Sent".
// Answered with nothing. A client that lost the answer sends the same mail once more: it isn't delivered
// again.
std::vector<std::string> sendMail(const RequestContext& context);

} // namespace tsr
