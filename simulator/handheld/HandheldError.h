#pragma once

#include <stdexcept>

namespace tsr {

// Something is wrong with a folder, a file or a command; the text is one line for the user.
class HandheldError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace tsr
