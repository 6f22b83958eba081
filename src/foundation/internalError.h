#pragma once

#include "foundation/GeneralError.h"

namespace tsr {

// The error for a state that must not occur: InternalError with the line of the raise and the name of its
// source.
inline GeneralError internalError(const char* source, int line) {
    return GeneralError(Message::InternalError) << Tag('n') << line << Tag('f') << source;
}

} // namespace tsr
