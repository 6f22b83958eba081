#include "handheld/RecordReader.h"

#include <algorithm>

#include "handheld/HandheldError.h"

namespace tsr {

std::uint32_t RecordReader::number(std::size_t bytes) {
    require(bytes);
    std::uint32_t value = 0;
    for (; bytes > 0; --bytes) value = value << 8 | data_[at_++];
    return value;
}

std::string RecordReader::string() {
    const auto begin = data_.begin() + static_cast<std::ptrdiff_t>(at_);
    const auto end = std::find(begin, data_.end(), std::uint8_t{0});
    if (end == data_.end()) throw HandheldError("a text in a record has no end");
    at_ += static_cast<std::size_t>(end - begin) + 1;
    return {begin, end};
}

std::vector<std::uint8_t> RecordReader::bytes(std::size_t count) {
    require(count);
    const auto begin = data_.begin() + static_cast<std::ptrdiff_t>(at_);
    at_ += count;
    return {begin, begin + static_cast<std::ptrdiff_t>(count)};
}

void RecordReader::require(std::size_t bytes) const {
    if (data_.size() - at_ < bytes) throw HandheldError("a record ends too early");
}

} // namespace tsr
