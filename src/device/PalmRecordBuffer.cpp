#include "device/PalmRecordBuffer.h"

#include <algorithm>
#include <cstring>

#include "device/crc16.h"
#include "foundation/GeneralError.h"

namespace tsr {

PalmRecordBuffer::PalmRecordBuffer() : storage_(firstCapacity) { afterDeviceCall(); }

PalmRecordBuffer::PalmRecordBuffer(const PalmRecordBuffer& other)
    : info_(other.info_),
      storage_(other.storage_.begin(),
               other.storage_.begin() + static_cast<std::ptrdiff_t>(other.info_.recordSize)) {
    afterDeviceCall();
}

void PalmRecordBuffer::afterDeviceCall() {
    deviceSize_ = info_.recordSize;
    info_.buffer = storage_.data();
    info_.bufferSize = static_cast<std::uint16_t>(storage_.size());
    info_.recordSize = static_cast<std::uint32_t>(std::min<std::size_t>(deviceSize_, storage_.size()));
}

void PalmRecordBuffer::growForDevice() {
    grow(deviceSize_);
    info_.recordSize = static_cast<std::uint32_t>(deviceSize_);
}

void PalmRecordBuffer::clear() {
    info_ = RawRecordInfo{};
    afterDeviceCall();
    resetCursor();
}

void PalmRecordBuffer::resetCursor() {
    bound_ = false;
    cursor_ = 0;
    end_ = 0;
}

void PalmRecordBuffer::grow(std::size_t needed) {
    if (needed <= storage_.size()) return;
    if (needed > largestCapacity) throw GeneralError(Message::BufferLengthExceeded);
    std::vector<std::uint8_t> larger(std::min(std::max(2 * storage_.size(), needed), largestCapacity));
    if (info_.recordSize != 0) std::copy(storage_.begin(), storage_.end(), larger.begin());
    storage_.swap(larger);
    info_.buffer = storage_.data();
    info_.bufferSize = static_cast<std::uint16_t>(storage_.size());
}

void PalmRecordBuffer::bind() {
    if (bound_) return;
    bound_ = true;
    cursor_ = 0;
    end_ = info_.recordSize;
}

void PalmRecordBuffer::requireBits(std::size_t bytes) {
    bind();
    if (remaining() < bytes) throw GeneralError(Message::IntegerUnderrun) << Tag('n') << 8 * bytes;
}

const std::uint8_t* PalmRecordBuffer::take(std::size_t count) {
    const std::uint8_t* at = storage_.data() + cursor_;
    cursor_ += count;
    return at;
}

std::uint8_t PalmRecordBuffer::readByte() {
    requireBits(1);
    return *take(1);
}

std::uint16_t PalmRecordBuffer::readWord() {
    requireBits(2);
    std::uint16_t value;
    std::memcpy(&value, take(2), 2);
    return SyncHHToHostWord(value);
}

std::uint32_t PalmRecordBuffer::read24() {
    requireBits(3);
    const std::uint8_t* at = take(3);
    return static_cast<std::uint32_t>(at[0] << 16 | at[1] << 8 | at[2]);
}

std::uint32_t PalmRecordBuffer::readDword() {
    requireBits(4);
    std::uint32_t value;
    std::memcpy(&value, take(4), 4);
    return SyncHHToHostDWord(value);
}

std::string PalmRecordBuffer::textUpToNul(std::size_t from, std::size_t room) const {
    const auto start = storage_.begin() + static_cast<std::ptrdiff_t>(from);
    const auto end = start + static_cast<std::ptrdiff_t>(room);
    const auto nul = std::find(start, end, 0);
    if (nul == end) throw GeneralError(Message::MissingNul);
    return std::string(start, nul);
}

std::string PalmRecordBuffer::readString() {
    bind();
    const std::string text = textUpToNul(cursor_, remaining());
    cursor_ += text.size() + 1;
    return text;
}

std::string PalmRecordBuffer::readFixedString(std::size_t offset, std::size_t maxChars) {
    bind();
    if (offset > remaining()) throw GeneralError(Message::BufferUnderrun);
    return textUpToNul(cursor_ + offset, std::min(remaining() - offset, maxChars + 1));
}

std::uint8_t PalmRecordBuffer::byteAt(std::size_t index) {
    bind();
    if (index >= size()) throw GeneralError(Message::BufferLengthExceeded);
    return storage_[index];
}

std::size_t PalmRecordBuffer::position() {
    bind();
    return cursor_;
}

std::uint16_t PalmRecordBuffer::crc(std::size_t offset) {
    bind();
    if (offset >= size()) return crc16(nullptr, 0);
    return crc16(storage_.data() + offset, size() - offset);
}

void PalmRecordBuffer::putBytes(const void* data, std::size_t count, std::size_t index) {
    if (count > largestCapacity || index > largestCapacity - count) {
        throw GeneralError(Message::BufferLengthExceeded);
    }
    grow(index + count);
    if (count != 0) std::memcpy(storage_.data() + index, data, count);
}

void PalmRecordBuffer::appendBytes(const void* data, std::size_t count) {
    putBytes(data, count, size());
    info_.recordSize += static_cast<std::uint32_t>(count);
    deviceSize_ = info_.recordSize;
}

void PalmRecordBuffer::appendByte(std::uint8_t value) { appendBytes(&value, 1); }

void PalmRecordBuffer::appendWord(std::uint16_t value) {
    const std::uint16_t turned = SyncHostToHHWord(value);
    appendBytes(&turned, 2);
}

void PalmRecordBuffer::append24(std::uint32_t value) {
    const std::uint8_t bytes[] = {static_cast<std::uint8_t>(value >> 16),
                                  static_cast<std::uint8_t>(value >> 8), static_cast<std::uint8_t>(value)};
    appendBytes(bytes, sizeof bytes);
}

void PalmRecordBuffer::appendDword(std::uint32_t value) {
    const std::uint32_t turned = SyncHostToHHDWord(value);
    appendBytes(&turned, 4);
}

void PalmRecordBuffer::appendString(const std::string& text) { appendBytes(text.c_str(), text.size() + 1); }

void PalmRecordBuffer::putByte(std::uint8_t value, std::size_t index) { putBytes(&value, 1, index); }

void PalmRecordBuffer::putWord(std::uint16_t value, std::size_t index) {
    const std::uint16_t turned = SyncHostToHHWord(value);
    putBytes(&turned, 2, index);
}

void PalmRecordBuffer::putDword(std::uint32_t value, std::size_t index) {
    const std::uint32_t turned = SyncHostToHHDWord(value);
    putBytes(&turned, 4, index);
}

void PalmRecordBuffer::putString(const std::string& text, std::size_t index) {
    putBytes(text.c_str(), text.size() + 1, index);
}

} // namespace tsr
