#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tsr {

// Writes a record's bytes front to back, big-endian.
class RecordWriter {
public:
    RecordWriter& number(std::size_t bytes, std::uint32_t value);
    RecordWriter& string(const std::string& text); // with a NUL behind it
    RecordWriter& bytes(const std::vector<std::uint8_t>& bytes);

    std::size_t size() const { return data_.size(); }
    std::vector<std::uint8_t> take() { return std::move(data_); }

private:
    std::vector<std::uint8_t> data_;
};

} // namespace tsr
