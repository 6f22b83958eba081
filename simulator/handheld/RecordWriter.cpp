#include "handheld/RecordWriter.h"

namespace tsr {

RecordWriter& RecordWriter::number(std::size_t bytes, std::uint32_t value) {
    for (std::size_t i = bytes; i > 0; --i) data_.push_back(static_cast<std::uint8_t>(value >> 8 * (i - 1)));
    return *this;
}

RecordWriter& RecordWriter::string(const std::string& text) {
    data_.insert(data_.end(), text.begin(), text.end());
    data_.push_back(0);
    return *this;
}

RecordWriter& RecordWriter::bytes(const std::vector<std::uint8_t>& bytes) {
    data_.insert(data_.end(), bytes.begin(), bytes.end());
    return *this;
}

} // namespace tsr
