#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tsr {

// Reads a record's bytes, which must outlive it, front to back and big-endian. Raises HandheldError at their
// end.
class RecordReader {
public:
    explicit RecordReader(const std::vector<std::uint8_t>& data) : data_(data) {}

    std::uint32_t number(std::size_t bytes); // at most 4
    std::string string();                    // up to a NUL, and past it
    std::vector<std::uint8_t> bytes(std::size_t count);

private:
    void require(std::size_t bytes) const;

    const std::vector<std::uint8_t>& data_;
    std::size_t at_ = 0;
};

} // namespace tsr
