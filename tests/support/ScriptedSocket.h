#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>
#include <vector>

#include "server/IStreamSocket.h"

namespace tsr::test {

// A connection whose peer has said everything already. What is written is kept, write by write.
class ScriptedSocket final : public IStreamSocket {
public:
    using Bytes = std::vector<std::uint8_t>;

    void bind(const ISocketAddress&) override {}
    void connect(const ISocketAddress&) override {}

    std::uint32_t read(std::uint8_t* buffer, std::uint32_t length) override {
        longestRead = std::max(longestRead, length);
        const std::size_t left = incoming.size() - position_;
        const auto count = static_cast<std::uint32_t>(std::min<std::size_t>({length, left, pieceBytes}));
        std::copy_n(incoming.begin() + static_cast<std::ptrdiff_t>(position_), count, buffer);
        position_ += count;
        return count;
    }

    std::uint32_t write(const std::uint8_t* buffer, std::uint32_t length) override {
        writes.emplace_back(buffer, buffer + length);
        return length;
    }

    void willReceive(const Bytes& frame) { incoming.insert(incoming.end(), frame.begin(), frame.end()); }
    bool isDrained() const { return position_ == incoming.size(); }

    Bytes incoming;
    std::size_t pieceBytes = std::numeric_limits<std::size_t>::max(); // the most that one read gives
    std::vector<Bytes> writes;
    std::uint32_t longestRead = 0;

private:
    std::size_t position_ = 0;
};

} // namespace tsr::test
