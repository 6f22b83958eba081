#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "device/PalmRecordBuffer.h"
#include "support/bytes.h"

namespace tsr::test {

inline void fill(PalmRecordBuffer& buffer, const std::vector<std::uint8_t>& data) {
    buffer.appendBytes(data.data(), data.size());
}

inline void fill(PalmRecordBuffer& buffer, const std::string& pairs) { fill(buffer, bytes(pairs)); }

inline std::vector<std::uint8_t> dataOf(const PalmRecordBuffer& buffer) {
    return {buffer.data(), buffer.data() + buffer.size()};
}

} // namespace tsr::test
