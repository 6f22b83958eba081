#pragma once

#include <string>
#include <vector>

#include "tessera/RequestContext.h"

namespace tsr {

// The request that starts the replication of one folder. Its strings are the mail database, the folder, those
// of a MailSelection, and four an entry:
//
//   document         its identity
//   sequence number  that the handheld knows
//   state            the number raised by one for a message that was changed on the handheld, "0" for one
//                    whose read mark was changed alone, otherwise the number again
//   mark             "1" for a message that is unread there
//
// Read marks that differ are settled here: that of the handheld prevails when it was changed there, and for
// a message that was. Otherwise the message is received for the mark of Notes. Answered with the token.
std::vector<std::string> takeMailReplicationInfo(const RequestContext& context);

} // namespace tsr
