#pragma once

#include <cstdint>

#include "interchange/MailMessage.h"
#include "tessera/Document.h"
#include "tessera/Mail.h"

namespace tsr {

// Between a message of the store and the one that others know. Theirs has no folder and no meeting: of a
// notice its own text goes out. The identity of a document stands in the ids of messages, before
// "@tessera.invalid".
MailMessage toMailMessage(const Document& document);

// A message without a date is of `now`, in seconds since 1970.
Mail toMail(const MailMessage& message, std::int64_t now);

} // namespace tsr
