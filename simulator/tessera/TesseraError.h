#pragma once

#include <stdexcept>

namespace tsr {

// A failure of the server's own or of the data that it was given: one line for the person at the command.
class TesseraError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace tsr
