#pragma once

#include "tessera/Mail.h"
#include "tessera/Store.h"

namespace tsr {

// Puts a message into the Inboxes of those to whom it is addressed and who are users, without the blind
// copies' addresses. The sender gets a report of the others. The copy in his folder "Sent" is the caller's.
// The message has its date, and comes from `sender` whatever it says.
void deliverToAll(Store& store, const User& sender, Mail mail);

} // namespace tsr
