#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "foundation/DateTime.h"
#include "records/PalmApplicationRecord.h"

namespace tsr {

// One message of the handheld's Mail. Integers are big-endian.
//
//   offset  size  field
//   0       2     date, see foundation/deviceDate.h; 0 for none
//   2       2     hour, minute
//   4       2     flags: 0x8000 read, 0x4000 signature wanted, 0x2000 confirm read, 0x1000 confirm delivery,
//                 bits 11 to 10 priority (0 high, 1 normal, 2 low), bits 9 to 0 kept as they are
//   6             subject, from, to, cc, bcc, reply-to, sent-to and body; each ends with a NUL
//   end     1     0; always written, and may be missing
//
// The CRC leaves out the bit of what has been read, so that reading a message doesn't make it a changed one.
// The sync database keeps that bit as the record's user data.
class PalmMailRecord : public PalmApplicationRecord {
public:
    static constexpr std::uint8_t inbox = 0; // categories
    static constexpr std::uint8_t outbox = 1;
    static constexpr std::uint8_t deleted = 2;
    static constexpr std::uint8_t drafts = 4;

    enum Priority : std::uint32_t { High, Normal, Low };

    PalmMailRecord() : PalmApplicationRecord(false) {}

    // Parses the whole of `buffer`, where the bit of what has been read and the last byte become 0. Raises
    // InvalidDate, DateTooEarly, InvalidTime, IntegerUnderrun, MissingNul, ExcessData.
    PalmMailRecord(PalmRecordBuffer& buffer, bool archived);

    bool isRead() const { return (flags_ & readBit) != 0; }
    void setRead(bool isRead) { setFlag(readBit, isRead); }
    bool wantsSignature() const { return (flags_ & signatureBit) != 0; }
    void setWantsSignature(bool wanted) { setFlag(signatureBit, wanted); }
    bool confirmsRead() const { return (flags_ & confirmReadBit) != 0; }
    void setConfirmsRead(bool wanted) { setFlag(confirmReadBit, wanted); }
    bool confirmsDelivery() const { return (flags_ & confirmDeliveryBit) != 0; }
    void setConfirmsDelivery(bool wanted) { setFlag(confirmDeliveryBit, wanted); }
    std::uint32_t priority() const { return flags_ >> priorityShift & 3; }
    void setPriority(std::uint32_t priority);
    std::uint32_t flags() const { return flags_; }

    std::uint8_t category() const override { return category_; }
    void setCategory(std::uint32_t index); // raises InvalidCategory above 15
    std::string description() const override { return subject; }
    // With actions the body has an information block behind it.
    std::uint16_t write(PalmRecordBuffer& buffer) const override;
    std::uint8_t syncEntryUserData() const override { return isRead() ? 0 : 1; }

    std::optional<DateTime> date; // on the clock of the user's zone, to the minute
    std::string bcc;
    std::string body;
    std::string cc;
    std::string from;
    std::string replyTo;
    std::string sentTo;
    std::string subject;
    std::string to;
    std::string unid;                 // of the Notes item; empty for a message written on the device
    std::vector<std::string> actions; // of a meeting notice, but for "Reply"
    DateTime meetingDate;
    std::uint32_t meetingDuration = 0; // in the server's units
    std::string meetingRoom;

private:
    static constexpr std::uint32_t readBit = 0x8000;
    static constexpr std::uint32_t signatureBit = 0x4000;
    static constexpr std::uint32_t confirmReadBit = 0x2000;
    static constexpr std::uint32_t confirmDeliveryBit = 0x1000;
    static constexpr std::uint32_t priorityShift = 10;

    void setFlag(std::uint32_t bit, bool on) { flags_ = on ? flags_ | bit : flags_ & ~bit; }
    void writeDate(PalmRecordBuffer& buffer) const;
    std::string bodyToWrite() const;

    std::uint32_t flags_ = Normal << priorityShift;
    std::uint8_t category_ = inbox;
};

} // namespace tsr
