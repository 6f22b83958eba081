#pragma once

#include <cstdint>

#include "server/IStreamSocket.h"
#include "server/wireText.h"

namespace tsr {

// Reads `length` bytes into `bytes`, in place of what it holds. The length comes from a header, and may lie:
// above 99,999,999, which no header can say, it raises std::bad_alloc without allocating; below that, memory
// grows with the bytes that have arrived, by at most 1 MiB at a time.
void readInPieces(IStreamSocket& socket, std::uint64_t length, WireBytes& bytes);

} // namespace tsr
