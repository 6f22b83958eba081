#include "state/SyncEntry.h"

#include <algorithm>

#include "foundation/GeneralError.h"

namespace tsr {

SyncEntry::SyncEntry(std::uint32_t sequenceNumber, std::uint32_t category, std::uint32_t userData,
                     std::vector<SyncRecord> records, std::int32_t seqNumBlockSuid, std::uint32_t unidIndex)
    : sequenceNumber_(sequenceNumber), seqNumBlockSuid_(seqNumBlockSuid), unidIndex_(unidIndex),
      records_(std::move(records)) {
    setCategory(category);
    setUserData(userData);
}

void SyncEntry::setCategory(std::uint32_t category) {
    if (category > 15) throw GeneralError(Message::InvalidCategory) << Tag('c') << category;
    flags_ = static_cast<std::uint8_t>((flags_ & 0xF0) | category);
}

void SyncEntry::setUserData(std::uint32_t userData) {
    if (userData > 7) throw GeneralError(Message::InvalidUserData) << Tag('n') << userData;
    flags_ = static_cast<std::uint8_t>((flags_ & 0x8F) | userData << 4);
}

void SyncEntry::setSendWhole(bool on) {
    flags_ = static_cast<std::uint8_t>(on ? flags_ | 0x80 : flags_ & 0x7F);
}

std::vector<SyncRecord>::const_iterator SyncEntry::findUid(std::int32_t uid) const {
    const auto found = std::find_if(records_.begin(), records_.end(),
                                    [uid](const SyncRecord& record) { return record.uid == uid; });
    if (found == records_.end()) throw GeneralError(Message::NoEntryForUid) << Tag("uid") << uid;
    return found;
}

std::vector<SyncRecord>::const_iterator SyncEntry::findTag(std::uint32_t tag) const {
    const auto found = std::find_if(records_.begin(), records_.end(),
                                    [tag](const SyncRecord& record) { return record.tag == tag; });
    if (found == records_.end()) throw GeneralError(Message::NoEntryForTag) << Tag('t') << tag;
    return found;
}

void SyncEntry::setRecord(std::uint32_t tag, std::int32_t uid, std::uint32_t crc) {
    for (SyncRecord& record : records_) {
        if (record.tag != tag) continue;
        record.uid = uid;
        record.crc = crc;
        return;
    }
    records_.push_back(SyncRecord{uid, crc, tag, false});
}

void SyncEntry::setRecordByUid(std::int32_t uid, std::uint32_t tag, std::uint32_t crc) {
    SyncRecord& record = records_[static_cast<std::size_t>(findUid(uid) - records_.begin())];
    record.tag = tag;
    record.crc = crc;
}

void SyncEntry::removeRecordByUid(std::int32_t uid) { records_.erase(findUid(uid)); }

void SyncEntry::removeRecordByTag(std::uint32_t tag) { records_.erase(findTag(tag)); }

std::uint32_t SyncEntry::crcOfUid(std::int32_t uid) const { return findUid(uid)->crc; }

std::uint32_t SyncEntry::tagOfUid(std::int32_t uid) const { return findUid(uid)->tag; }

std::uint32_t SyncEntry::crcOfTag(std::uint32_t tag) const { return findTag(tag)->crc; }

std::int32_t SyncEntry::uidOfTag(std::uint32_t tag) const { return findTag(tag)->uid; }

void SyncEntry::tags(std::vector<std::uint32_t>& out) const {
    out.clear();
    for (const SyncRecord& record : records_) out.push_back(record.tag);
    std::sort(out.begin(), out.end());
}

void SyncEntry::removeZeroUids() {
    std::erase_if(records_, [](const SyncRecord& record) { return record.uid == 0; });
}

bool SyncEntry::markRecordDeleted(std::int32_t uid) {
    bool all = true;
    for (SyncRecord& record : records_) {
        if (record.uid == uid) record.deleted = true;
        all = all && record.deleted;
    }
    return all;
}

bool SyncEntry::matches(std::optional<std::uint8_t> wanted) const {
    if ((status_ & unlisted) != 0) return false;
    return !wanted || *wanted == category();
}

void SyncEntry::write(PalmRecordBuffer& buffer, std::vector<FixupEntry>& fixups) const {
    buffer.appendByte(flags_);
    buffer.appendWord(static_cast<std::uint16_t>(sequenceNumber_));
    buffer.appendWord(static_cast<std::uint16_t>(records_.size()));
    for (const SyncRecord& record : records_) {
        if (record.uid < 0) {
            fixups.push_back(FixupEntry{0U - static_cast<std::uint32_t>(record.uid), 0, buffer.size()});
            buffer.append24(0);
        } else {
            buffer.append24(static_cast<std::uint32_t>(record.uid));
        }
        buffer.appendWord(static_cast<std::uint16_t>(record.tag));
        buffer.appendWord(static_cast<std::uint16_t>(record.crc));
    }
}

} // namespace tsr
