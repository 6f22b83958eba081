#pragma once

#include <string>

#include "interchange/MailMessage.h"

namespace tsr {

// One message as a file holds it, .eml (RFC 5322, with MIME). What a MailMessage has no place for is passed
// over. Raises InterchangeError.
//
//   Importance           high or low; without it X-Priority, 1 and 2 high, 4 and 5 low
//   Status               with R in it for one that has been read
//   Message-ID           and the first id of In-Reply-To
//   the body             its text, and a line for each attachment; see mimeBody.h
//
// An address under tessera.invalid stands for a name of Notes, which is no address of the Internet:
// "Pat Lee <pat.lee@tessera.invalid>" for "Pat Lee".
MailMessage readMessage(const std::string& text);

// With CR LF; in ASCII when it can be, else UTF-8 in quoted-printable.
std::string messageText(const MailMessage& message);

} // namespace tsr
