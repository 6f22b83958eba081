#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "handheld/Handheld.h"
#include "interchange/MailMessage.h"

namespace tsr {

// The handheld's mail in files of other programs. A handheld knows no zones: times are taken as they stand in
// their own zones, and written as UTC.

// Adds messages to a folder and gives the reasons why others could not be held, each with its subject.
std::vector<std::string> importMail(Handheld& handheld, const std::vector<MailMessage>& messages,
                                    std::uint8_t folder);

// Of one folder, or of all. Raises HandheldError for a damaged record.
std::vector<MailMessage> mailOf(HandheldDatabase& database, std::optional<std::uint8_t> folder);

MailMessage toMailMessage(const HandheldRecord& record); // as above

} // namespace tsr
