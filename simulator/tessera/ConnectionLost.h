#pragma once

namespace tsr {

// Thrown in the place of an answer when the connection is to end without one. It isn't an error that the
// client may hear of, and so not one of the standard's.
struct ConnectionLost {};

} // namespace tsr
