#pragma once

#include <cstdint>
#include <string>

#include "device/PalmRecordBuffer.h"

namespace tsr {

// One record of an application on the handheld. It parses itself from a PalmRecordBuffer and writes itself
// back byte for byte.
class PalmApplicationRecord {
public:
    virtual ~PalmApplicationRecord() = default;

    virtual std::uint8_t category() const = 0;   // 0 to 15
    virtual std::string description() const = 0; // by which messages name the record
    // Appends the record's bytes, sets the category (and the secret attribute, where the record has one) on
    // the buffer, and returns the CRC of exactly the bytes that it appended.
    virtual std::uint16_t write(PalmRecordBuffer& buffer) const = 0;
    virtual std::uint16_t syncEntryTag() const { return 0; } // the tag of a record that isn't the primary one
    virtual std::uint8_t syncEntryUserData() const { return 0; } // three bits that the sync database keeps

    bool archived() const { return archived_; } // read from the device with the archive attribute
    std::uint32_t crc() const { return crc_; }  // of the bytes it was parsed from; 0 for one built in memory

protected:
    explicit PalmApplicationRecord(bool archived) : archived_(archived) {}
    // For parsing constructors: takes the CRC of the whole buffer before any field is read.
    PalmApplicationRecord(PalmRecordBuffer& buffer, bool archived)
        : archived_(archived), crc_(buffer.crc(0)) {}
    void setCrc(std::uint32_t crc) { crc_ = crc; } // for one that doesn't count all of its bytes
    PalmApplicationRecord(const PalmApplicationRecord&) = default;
    PalmApplicationRecord& operator=(const PalmApplicationRecord&) = default;

private:
    bool archived_;
    std::uint32_t crc_ = 0;
};

} // namespace tsr
