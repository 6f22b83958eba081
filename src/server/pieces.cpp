#include "server/pieces.h"

#include <algorithm>
#include <new>

namespace tsr {

namespace {

constexpr std::uint64_t longestBody = 99999999;
constexpr std::uint64_t pieceBytes = 1 << 20;

} // namespace

void readInPieces(IStreamSocket& socket, std::uint64_t length, WireBytes& bytes) {
    if (length > longestBody) throw std::bad_alloc();
    bytes.clear();
    while (bytes.size() < length) {
        const std::uint64_t piece = std::min<std::uint64_t>(pieceBytes, length - bytes.size());
        std::uint8_t* fresh = extend(bytes, static_cast<std::size_t>(piece));
        socket.readExact(fresh, static_cast<std::uint32_t>(piece));
    }
}

} // namespace tsr
