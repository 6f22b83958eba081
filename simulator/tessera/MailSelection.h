#pragma once

#include <optional>
#include <set>
#include <string>

#include "tessera/RequestContext.h"
#include "tessera/SelectionFormula.h"

namespace tsr {

// Which messages of the Inbox a handheld wants that it doesn't have yet, from the strings of its replication
// information.
class MailSelection {
public:
    // From string `first` on: the first day of the window, in seconds from 1993 to its midnight; the options,
    // of which the second is "N" for unread messages alone; "1" before a formula, or "0" for none. Raises
    // RequestRefused.
    MailSelection(const RequestContext& context, std::size_t first);

    bool selects(const Properties& message); // as that of SelectionFormula

    std::set<std::string> fields() const; // the properties that it looks at
    std::size_t strings() const { return formula_ ? 4 : 3; }

private:
    ZoneRule zone_;
    std::int64_t start_; // of the window, on the user's clock
    bool unreadAlone_;
    std::optional<SelectionFormula> formula_;
};

} // namespace tsr
