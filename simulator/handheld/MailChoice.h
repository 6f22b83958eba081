#pragma once

#include <cstdint>
#include <string>

#include "handheld/Handheld.h"

namespace tsr {

// Which mail the user of a handheld wants, a preference of its Mail; texts are the handheld's own. Integers
// are big-endian.
//
//   offset  size   field
//   0       1      filter, by the numbers below
//   1       1      1: mail of high importance passes the filter
//   2       1      1: wants what has one of the texts, 0: what has none of them
//   3       1      0
//   4       2      bytes of a body that are received
//   6              texts in "to", "from" and "subject", each ends with a NUL
struct MailFilter {
    enum class Kind : std::uint8_t { All, SendOnly, Matching, Unread };

    Kind kind = Kind::All;
    bool passesHigh = true;
    bool wantsMatching = true;
    std::uint16_t longestBody = 4000;
    std::string to{};
    std::string from{};
    std::string subject{};

    bool operator==(const MailFilter&) const = default;
};

// Without the preference it is a filter for all. All raise HandheldError: for a preference that is damaged,
// or too long for the desktop, which reads 1,024 bytes.
MailFilter mailFilter(const Handheld& handheld);
void setMailFilter(Handheld& handheld, const MailFilter& filter);

// What Mail puts under messages that want it: another preference, a text with a NUL. Empty for none.
std::string mailSignature(const Handheld& handheld);
void setMailSignature(Handheld& handheld, const std::string& signature);

} // namespace tsr
