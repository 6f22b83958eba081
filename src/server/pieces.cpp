#include "server/pieces.h"

#include <algorithm>
#include <new>

namespace tsr {

namespace {

constexpr std::uint64_t longestBody = 99999999;
constexpr std::size_t pieceBytes = 1 << 20;

} // namespace

void readInPieces(IStreamSocket& socket, std::uint64_t length, WireBytes& bytes) {
    if (length > longestBody) throw std::bad_alloc();
    bytes.clear();
    while (bytes.size() < length) {
        const std::size_t start = bytes.size();
        const std::size_t piece = std::min<std::size_t>(pieceBytes, length - start);
        bytes.resize(start + piece);
        socket.readExact(bytes.data() + start, static_cast<std::uint32_t>(piece));
    }
}

} // namespace tsr
