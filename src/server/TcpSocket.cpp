#include "server/TcpSocket.h"

#include "server/TcpSocketImpl.h"

namespace tsr {

TcpSocket::TcpSocket() : impl_(new TcpSocketImpl) {}

void TcpSocket::bind(const ISocketAddress& address) { impl_->bind(address); }

void TcpSocket::connect(const ISocketAddress& address) { impl_->connect(address); }

std::uint32_t TcpSocket::read(std::uint8_t* buffer, std::uint32_t length) {
    return impl_->read(buffer, length);
}

std::uint32_t TcpSocket::write(const std::uint8_t* buffer, std::uint32_t length) {
    return impl_->write(buffer, length);
}

} // namespace tsr
