#pragma once

#include <cstdint>
#include <string>

#include "device/PalmRecordBuffer.h"

namespace tsr {

// What the user has chosen in the handheld's Mail for the mail that he wants. Integers are big-endian.
//
//   offset  size   field
//   0       1      filter type: 0 all, 1 send only, 2 filter, 3 unread
//   1       1      1: mail of high importance passes the filter
//   2       1      1: keeps what matches the filter, 0: what doesn't
//   3       1      not read
//   4       2      size limit of a message that is received
//   6              filter on "to", "from" and "subject", each ends with a NUL
class MailPreferences {
public:
    enum FilterType : std::uint32_t { All, SendOnly, Filter, Unread };

    MailPreferences() = default;

    // Raises InvalidMailFilter, IntegerUnderrun, MissingNul.
    explicit MailPreferences(PalmRecordBuffer& buffer);

    // In the language of Notes; empty without a filter. What the user typed stands in it as it is, quotation
    // marks too.
    std::string selectionFormula() const;

    std::uint32_t filterType = All;
    std::string filterTo;
    std::string filterFrom;
    std::string filterSubject;
    bool getHigh = true;
    bool filterContaining = true;
    std::uint32_t truncateLength = 4000;
};

} // namespace tsr
