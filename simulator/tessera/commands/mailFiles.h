#pragma once

#include <string>
#include <vector>

#include "interchange/MailMessage.h"
#include "tessera/Store.h"

namespace tsr {

// The mail of a user in files of other programs.

// Adds messages to a folder and gives the reasons why others could not be held, each with its subject.
std::vector<std::string> importMail(Store& store, const User& user, const std::vector<MailMessage>& messages,
                                    const std::string& folder);

// Of a folder, or of all for an empty name.
std::vector<MailMessage> mailOf(Store& store, const User& user, const std::string& folder);

} // namespace tsr
