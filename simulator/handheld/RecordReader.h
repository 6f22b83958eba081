#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "handheld/HandheldError.h"
#include "handheld/HandheldRecord.h"

namespace tsr {

// Reads a record front to back, big-endian. Raises HandheldError at its end.
class RecordReader {
public:
    explicit RecordReader(const HandheldRecord& record) : record_(record) {}

    std::uint32_t number(std::size_t bytes) {
        require(bytes);
        std::uint32_t value = 0;
        for (; bytes > 0; --bytes) value = value << 8 | record_.data[at_++];
        return value;
    }

    std::string string() {
        const auto begin = record_.data.begin() + static_cast<std::ptrdiff_t>(at_);
        const auto end = std::find(begin, record_.data.end(), std::uint8_t{0});
        if (end == record_.data.end()) fail();
        at_ += static_cast<std::size_t>(end - begin) + 1;
        return {begin, end};
    }

    std::vector<std::uint8_t> bytes(std::size_t count) {
        require(count);
        const auto begin = record_.data.begin() + static_cast<std::ptrdiff_t>(at_);
        at_ += count;
        return {begin, begin + static_cast<std::ptrdiff_t>(count)};
    }

private:
    void require(std::size_t bytes) const {
        if (record_.data.size() - at_ < bytes) fail();
    }

    [[noreturn]] void fail() const {
        throw HandheldError("record " + std::to_string(record_.id) + " ends too early");
    }

    const HandheldRecord& record_;
    std::size_t at_ = 0;
};

// Writes one, likewise.
class RecordWriter {
public:
    RecordWriter& number(std::size_t bytes, std::uint32_t value) {
        for (std::size_t i = bytes; i > 0; --i)
            data_.push_back(static_cast<std::uint8_t>(value >> 8 * (i - 1)));
        return *this;
    }

    RecordWriter& string(const std::string& text) {
        data_.insert(data_.end(), text.begin(), text.end());
        data_.push_back(0);
        return *this;
    }

    std::vector<std::uint8_t> take() { return std::move(data_); }

private:
    std::vector<std::uint8_t> data_;
};

} // namespace tsr
