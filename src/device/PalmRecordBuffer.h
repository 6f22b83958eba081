#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/syncManager.h"

namespace tsr {

// One device record with its bytes: the block that the Sync Manager reads and writes, with a read cursor and
// big-endian readers and writers. A record has at most 65,535 bytes; what would pass that raises
// BufferLengthExceeded before a byte is touched.
//
// The first read binds the cursor: it stands at the start of the data and its end at the size of that moment.
// Every reader binds, but atEnd and remaining; on a fresh buffer there is nothing left, whatever it holds.
class PalmRecordBuffer {
public:
    static constexpr std::size_t firstCapacity = 1024;    // bytes
    static constexpr std::size_t largestCapacity = 65535; // bytes: the width of RawRecordInfo::bufferSize

    PalmRecordBuffer();
    PalmRecordBuffer(
        const PalmRecordBuffer& other); // capacity and size are those of the data, the cursor is unset
    PalmRecordBuffer& operator=(const PalmRecordBuffer&) = delete;

    // The record's own fields. `size` is in bytes.
    std::uint32_t recordId() const { return info_.recordId; }
    void setRecordId(std::uint32_t id) { info_.recordId = id; }
    std::int16_t categoryId() const { return info_.categoryId; }
    void setCategoryId(std::int16_t category) { info_.categoryId = category; }
    std::uint8_t attributes() const { return info_.attributes; }
    void setAttributes(std::uint8_t attributes) { info_.attributes = attributes; }
    std::size_t size() const { return info_.recordSize; }
    bool isEmpty() const { return info_.recordSize == 0; }
    bool isDeleted() const { return (info_.attributes & 0x80) != 0; }
    bool isArchived() const { return (info_.attributes & 0x08) != 0; }
    const std::uint8_t* data() const { return storage_.data(); }
    std::size_t capacity() const { return info_.bufferSize; }

    // For the device calls of PalmDatabase: the block to hand over, and what must follow each call that has
    // it.
    RawRecordInfo& rawForCall() { return info_; }
    void afterDeviceCall(); // whatever came back, size and pointers stay within the storage
    bool holdsAll() const {
        return deviceSize_ <= info_.bufferSize;
    }                     // false: the device has more than it could give
    void growForDevice(); // makes room for all of it; the size is then what the device told

    void clear();       // all fields to 0; storage and capacity stay
    void resetCursor(); // the next reader binds afresh

    // Makes room for `needed` bytes: at least twice the old capacity, up to the largest.
    void grow(std::size_t needed);

    // Readers. Raise IntegerUnderrun with the width in bits, and leave the cursor where it was.
    std::uint8_t readByte();
    std::uint16_t readWord();
    std::uint32_t read24();
    std::uint32_t readDword();
    std::string readString(); // up to the next NUL, and past it; raises MissingNul

    // The text that starts `offset` bytes behind the cursor, which stays: at most `maxChars` characters, then
    // a NUL. Raises BufferUnderrun when the start is past the end, MissingNul when no NUL comes in time.
    std::string readFixedString(std::size_t offset, std::size_t maxChars);
    std::uint8_t byteAt(std::size_t index); // raises BufferLengthExceeded outside the data
    bool atEnd() const { return cursor_ == end_; }
    std::size_t remaining() const { return end_ - cursor_; }
    std::size_t position();
    std::uint16_t crc(std::size_t offset); // CRC-16 of the data from `offset` on, see device/crc16.h

    // Writers at the end of the data, which grows.
    void appendByte(std::uint8_t value);
    void appendWord(std::uint16_t value);
    void append24(std::uint32_t value); // the low 24 bits
    void appendDword(std::uint32_t value);
    void appendString(const std::string& text); // with a NUL behind it
    void appendBytes(const void* data, std::size_t count);

    // Writers at an index. The size of the data stays; storage that has to grow is filled with zeros.
    void putByte(std::uint8_t value, std::size_t index);
    void putWord(std::uint16_t value, std::size_t index);
    void putDword(std::uint32_t value, std::size_t index);
    void putString(const std::string& text, std::size_t index); // with a NUL behind it

private:
    void bind();
    const std::uint8_t*
    take(std::size_t count); // moves the cursor over `count` bytes that are known to be there
    void requireBits(std::size_t bytes);
    std::string textUpToNul(std::size_t from, std::size_t room) const;
    void putBytes(const void* data, std::size_t count, std::size_t index);

    RawRecordInfo info_{};
    std::vector<std::uint8_t> storage_; // info_.buffer points here, and info_.bufferSize is its size
    std::size_t deviceSize_ = 0;        // recordSize as the device told it last
    bool bound_ = false;
    std::size_t cursor_ = 0;
    std::size_t end_ = 0;
};

} // namespace tsr
