#pragma once

#include <string>

#include "foundation/Error.h"

namespace tsr::test {

// The text of the error, of class `Raised` or one that derives from it, that `action` raises; "nothing
// raised" where it comes back. An error of another class goes on.
template <typename Raised = Error, typename Action>
std::string textRaisedBy(const Action& action) {
    try {
        action();
    } catch (const Raised& error) {
        return errorText(error);
    }
    return "nothing raised";
}

// The same for the cause of that error: "no cause" where it has none.
template <typename Action>
std::string causeRaisedBy(const Action& action) {
    try {
        action();
    } catch (const Error& error) {
        return error.cause() ? errorText(*error.cause()) : "no cause";
    }
    return "nothing raised";
}

} // namespace tsr::test
