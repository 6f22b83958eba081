#include "server/IStreamSocket.h"

#include "foundation/GeneralError.h"

namespace tsr {

void IStreamSocket::readExact(std::uint8_t* buffer, std::uint32_t length) {
    std::uint32_t received = 0;
    while (received < length) {
        const std::uint32_t count = read(buffer + received, length - received);
        if (count == 0) throw GeneralError(Message::ConnectionClosed);
        received += count;
    }
}

} // namespace tsr
