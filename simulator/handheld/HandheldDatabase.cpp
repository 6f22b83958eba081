#include "handheld/HandheldDatabase.h"

#include <algorithm>

namespace tsr {

std::uint32_t HandheldDatabase::addRecord(std::vector<std::uint8_t> data, std::uint8_t category,
                                          std::uint8_t attributes) {
    const auto marked = static_cast<std::uint8_t>(attributes | HandheldRecord::dirty);
    const std::uint32_t id = freshId();
    return id != 0 && putRecord({id, marked, category, std::move(data)}) ? id : 0;
}

bool HandheldDatabase::editRecord(std::uint32_t id, std::vector<std::uint8_t> data) {
    HandheldRecord* record = findLive(id);
    if (!record) return false;
    record->data = std::move(data);
    record->attributes |= HandheldRecord::dirty;
    noteChange();
    return true;
}

bool HandheldDatabase::moveRecord(std::uint32_t id, std::uint8_t category) {
    HandheldRecord* record = findLive(id);
    if (!record) return false;
    record->category = category;
    record->attributes |= HandheldRecord::dirty;
    noteChange();
    return true;
}

bool HandheldDatabase::markSecret(std::uint32_t id, bool secret) {
    HandheldRecord* record = findLive(id);
    if (!record) return false;
    record->attributes &= static_cast<std::uint8_t>(~HandheldRecord::secret);
    record->attributes |= HandheldRecord::dirty | (secret ? HandheldRecord::secret : 0);
    noteChange();
    return true;
}

bool HandheldDatabase::deleteRecord(std::uint32_t id) {
    HandheldRecord* record = findLive(id);
    if (!record) return false;
    record->data.clear();
    record->attributes |= HandheldRecord::deleted | HandheldRecord::dirty;
    noteChange();
    return true;
}

bool HandheldDatabase::archiveRecord(std::uint32_t id) {
    HandheldRecord* record = findLive(id);
    if (!record) return false;
    record->attributes |= HandheldRecord::archived | HandheldRecord::dirty;
    noteChange();
    return true;
}

std::uint32_t HandheldDatabase::writeRecord(std::uint32_t id, std::uint8_t category, bool secret,
                                            std::vector<std::uint8_t> data) {
    const std::uint8_t attributes = secret ? HandheldRecord::secret : 0;
    if (HandheldRecord* record = records_.find(id)) {
        *record = {id, attributes, category, std::move(data)};
        noteChange();
        return id;
    }
    if (id == 0) id = freshId();
    return id != 0 && putRecord({id, attributes, category, std::move(data)}) ? id : 0;
}

bool HandheldDatabase::eraseRecord(std::uint32_t id) {
    if (!records_.erase(id)) return false;
    // The next fresh id must not be this one, even if the file that the records came from had no seed.
    header_.uniqueIdSeed = std::max(header_.uniqueIdSeed, highestId_);
    noteChange();
    return true;
}

void HandheldDatabase::purgeDeletedRecords() {
    std::vector<std::uint32_t> gone;
    records_.forEach([&](const HandheldRecord& record) {
        if (record.isGone()) gone.push_back(record.id);
    });
    for (std::uint32_t id : gone) eraseRecord(id);
}

void HandheldDatabase::resetSyncFlags() {
    const bool changed = records_.changeEach([](HandheldRecord& record) {
        const bool wasDirty = (record.attributes & HandheldRecord::dirty) != 0;
        record.attributes &= static_cast<std::uint8_t>(~HandheldRecord::dirty);
        return wasDirty;
    });
    unsaved_ = unsaved_ || changed;
}

bool HandheldDatabase::patchRecord(std::uint32_t id, std::size_t offset,
                                   const std::vector<std::uint8_t>& bytes) {
    HandheldRecord* record = records_.find(id);
    if (!record || offset > record->data.size() || bytes.size() > record->data.size() - offset) return false;
    std::copy(bytes.begin(), bytes.end(), record->data.begin() + static_cast<std::ptrdiff_t>(offset));
    noteChange();
    return true;
}

bool HandheldDatabase::putRecord(HandheldRecord record) {
    if (records_.size() >= maxRecords || records_.contains(record.id)) return false;
    highestId_ = std::max(highestId_, record.id);
    records_.append(std::move(record));
    noteChange();
    return true;
}

void HandheldDatabase::setAppInfo(std::vector<std::uint8_t> block) {
    if (block.empty())
        appInfo_.reset();
    else
        appInfo_ = std::move(block);
    noteChange();
}

void HandheldDatabase::setSortInfo(std::vector<std::uint8_t> block) {
    sortInfo_ = std::move(block);
    noteChange();
}

bool HandheldDatabase::operator==(const HandheldDatabase& other) const {
    return header_ == other.header_ && appInfo_ == other.appInfo_ && sortInfo_ == other.sortInfo_
        && records_ == other.records_;
}

// 0 when the 24 bits are used up. A seed below the highest id comes from files that were made on a desktop.
std::uint32_t HandheldDatabase::freshId() {
    const std::uint32_t last = std::max(header_.uniqueIdSeed & HandheldRecord::maxId, highestId_);
    if (last >= HandheldRecord::maxId || records_.size() >= maxRecords) return 0;
    header_.uniqueIdSeed = last + 1;
    return last + 1;
}

HandheldRecord* HandheldDatabase::findLive(std::uint32_t id) {
    HandheldRecord* record = records_.find(id);
    return record && !record->isGone() ? record : nullptr;
}

void HandheldDatabase::noteChange() {
    ++header_.modificationNumber;
    unsaved_ = true;
}

} // namespace tsr
