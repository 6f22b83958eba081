#pragma once

#include <string>
#include <vector>

#include "interchange/MailMessage.h"

namespace tsr {

// The messages of an mbox file. Each begins with a line "From " behind an empty one or the start of the file;
// a line of a message that looks so has ">" before it, one more than it had (mboxrd). Raises
// InterchangeError, with the number of the message, from 1.
std::vector<MailMessage> readMailbox(const std::string& text);

std::string mailboxText(const std::vector<MailMessage>& messages);

} // namespace tsr
