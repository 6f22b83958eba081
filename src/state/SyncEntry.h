#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "device/PalmRecordBuffer.h"
#include "state/FixupEntry.h"
#include "state/SyncRecord.h"

namespace tsr {

// One Notes item in the replication state: its last exchange and the device records that it stands for.
//
// Operations that look for a record take the first match; without one they raise NoEntryForUid or
// NoEntryForTag. Who changes an entry sets `dirty` on its SeqNumBlock.
class SyncEntry {
public:
    // Raises InvalidCategory above 15, InvalidUserData above 7.
    SyncEntry(std::uint32_t sequenceNumber, std::uint32_t category, std::uint32_t userData,
              std::vector<SyncRecord> records, std::int32_t seqNumBlockSuid, std::uint32_t unidIndex);

    std::uint32_t sequenceNumber() const { return sequenceNumber_; } // the device keeps its low 16 bits
    void setSequenceNumber(std::uint32_t number) { sequenceNumber_ = number; }

    std::uint8_t category() const { return flags_ & 0xF; }
    void setCategory(std::uint32_t category);
    std::uint8_t userData() const { return flags_ >> 4 & 7; }
    void setUserData(std::uint32_t userData);
    bool sendWhole() const { return (flags_ & 0x80) != 0; } // a change of one record obliges to send all
    void setSendWhole(bool on);

    // Facts of this session, which the device never stores.
    bool isModified() const { return (status_ & modified) != 0; }
    void setModified() { status_ |= modified; }
    bool isMarkedWhole() const { return (status_ & markedWhole) != 0; }
    void setMarkedWhole() { status_ |= markedWhole; }
    bool hasAttributesChanged() const { return (status_ & attributesChanged) != 0; }
    void setAttributesChanged() { status_ |= attributesChanged; }

    std::int32_t seqNumBlockSuid() const { return seqNumBlockSuid_; }
    std::uint32_t unidIndex() const { return unidIndex_; }
    const std::vector<SyncRecord>& records() const {
        return records_;
    } // in the order of the block, new ones last

    void setRecord(std::uint32_t tag, std::int32_t uid,
                   std::uint32_t crc); // by tag; appends where there is none
    void setRecordByUid(std::int32_t uid, std::uint32_t tag, std::uint32_t crc);
    void removeRecordByUid(std::int32_t uid);
    void removeRecordByTag(std::uint32_t tag);
    std::uint32_t crcOfUid(std::int32_t uid) const;
    std::uint32_t tagOfUid(std::int32_t uid) const;
    std::uint32_t crcOfTag(std::uint32_t tag) const;
    std::int32_t uidOfTag(std::uint32_t tag) const;
    void tags(std::vector<std::uint32_t>& out) const; // ascending, in place of what was there
    void removeZeroUids();

    // Marks every record with this UID; true if every record of the entry is deleted then.
    bool markRecordDeleted(std::int32_t uid);

    // Whether the entry belongs into a listing of `category`, or of all where there is none.
    bool matches(std::optional<std::uint8_t> category) const;

    // Appends the entry to a sequence number block. A record that is still pending leaves a hole, which is
    // added to `fixups` with a block of 0.
    void write(PalmRecordBuffer& buffer, std::vector<FixupEntry>& fixups) const;

private:
    static constexpr std::uint32_t unlisted = 0x02; // kept out of listings; nothing sets it
    static constexpr std::uint32_t modified = 0x04;
    static constexpr std::uint32_t markedWhole = 0x40;
    static constexpr std::uint32_t attributesChanged = 0x80;

    std::vector<SyncRecord>::const_iterator findUid(std::int32_t uid) const;
    std::vector<SyncRecord>::const_iterator findTag(std::uint32_t tag) const;

    std::uint32_t sequenceNumber_;
    std::uint8_t flags_ = 0;
    std::uint32_t status_ = 0;
    std::int32_t seqNumBlockSuid_;
    std::uint32_t unidIndex_;
    std::vector<SyncRecord> records_;
};

} // namespace tsr
