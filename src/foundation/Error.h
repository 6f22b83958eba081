#pragma once

#include <ostream>
#include <string>

#include "foundation/CountedPtr.h"

namespace tsr {

// The root of everything that is raised, but for the two signals (see foundation/signals.h). An error may
// have a cause, and so failures form a chain, outermost first.
class Error {
public:
    virtual ~Error() = default;

    virtual CountedPtr<Error> clone() const = 0;        // a heap copy of the dynamic class; shares the cause
    virtual void print(std::ostream& stream) const = 0; // this error's own text, not that of its cause

    const CountedPtr<Error>& cause() const { return cause_; } // null when there is none

protected:
    Error() = default;
    explicit Error(CountedPtr<Error> cause) : cause_(std::move(cause)) {}
    Error(const Error&) = default;
    Error& operator=(const Error&) = default;

private:
    CountedPtr<Error> cause_;
};

// What `error.print` writes.
std::string errorText(const Error& error);

std::ostream& operator<<(std::ostream& stream, const Error& error);

} // namespace tsr
