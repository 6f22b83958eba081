#pragma once

#include <stdexcept>

namespace tsr {

// A file of somebody else's that can't be understood: one line for the person at the command.
class InterchangeError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace tsr
