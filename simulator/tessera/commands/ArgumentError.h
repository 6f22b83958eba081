#pragma once

#include <stdexcept>

namespace tsr {

// An argument that can't be meant; ends the program with the status of a wrong argument.
class ArgumentError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace tsr
