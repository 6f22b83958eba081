#pragma once

#include "foundation/GeneralError.h"
#include "foundation/SessionTerminatedError.h"

namespace tsr {

// Runs a phase of the session. Whatever it raises is wrapped in the phase's message.
template <typename Work>
void guarded(Message message, Work work) {
    try {
        work();
    } catch (const Error& error) {
        throw SessionTerminatedError(message, error);
    } catch (...) {
        throw SessionTerminatedError(message, GeneralError(Message::UnknownException));
    }
}

} // namespace tsr
