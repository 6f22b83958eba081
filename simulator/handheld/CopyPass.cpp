#include "handheld/CopyPass.h"

#include <algorithm>

namespace tsr {

namespace {

constexpr std::uint8_t pendingCategory = 3;
constexpr std::uint8_t fixupCategory = 6;
constexpr std::size_t pendingHeaderBytes = 2;
constexpr std::size_t fixupEntryBytes = 8;
constexpr std::size_t holeBytes = 3;

struct Fixup {
    std::uint32_t pendingId;
    std::uint32_t blockId;
    std::size_t offset;
};

std::uint32_t read24(const std::uint8_t* bytes) {
    return std::uint32_t{bytes[0]} << 16 | std::uint32_t{bytes[1]} << 8 | bytes[2];
}

Fixup readFixup(const std::uint8_t* bytes) {
    return {read24(bytes), read24(bytes + 3), static_cast<std::size_t>(bytes[6] << 8 | bytes[7])};
}

std::vector<std::uint8_t> toBytes24(std::uint32_t value) {
    return {static_cast<std::uint8_t>(value >> 16), static_cast<std::uint8_t>(value >> 8),
            static_cast<std::uint8_t>(value)};
}

bool hasWholeFixups(const HandheldRecord& record) {
    return !record.data.empty() && (record.data.size() - 1) % fixupEntryBytes == 0;
}

// All passes together look at each entry of many fixups hundreds of times. Neighbours mostly name one block,
// which is found once.
bool areInside(const HandheldRecord& fixups, const HandheldDatabase& sync) {
    const HandheldRecord* block = nullptr;
    for (std::size_t at = 1; at < fixups.data.size(); at += fixupEntryBytes) {
        const Fixup fixup = readFixup(&fixups.data[at]);
        if (!block || block->id != fixup.blockId) block = sync.records().find(fixup.blockId);
        if (!block || fixup.offset + holeBytes > block->data.size()) return false;
    }
    return true;
}

// Ids, in index order: records move in memory as others are erased.
std::vector<std::uint32_t> idsOf(const HandheldDatabase& database, std::uint8_t category,
                                 std::size_t limit = HandheldDatabase::maxRecords) {
    std::vector<std::uint32_t> ids;
    std::size_t index = 0;
    auto wanted = [&](const HandheldRecord& record) {
        return record.category == category && !record.isGone();
    };
    while (ids.size() < limit) {
        const HandheldRecord* record = database.records().findFrom(index, wanted);
        if (!record) break;
        ids.push_back(record->id);
        ++index;
    }
    return ids;
}

} // namespace

bool CopyPass::run() {
    if (!checkFixups()) return false;
    const bool copied = copyRecords();
    // Also after a failure: what has been copied must not stay without its holes filled.
    fillHoles();
    return copied;
}

// Before anything is copied, so that a damaged record leaves both databases as they were.
bool CopyPass::checkFixups() {
    for (const std::uint32_t id : idsOf(sync_, fixupCategory)) {
        const HandheldRecord& fixups = *sync_.records().find(id);
        if (hasWholeFixups(fixups) && areInside(fixups, sync_)) continue;
        unusableRecord_ = id;
        return false;
    }
    return true;
}

bool CopyPass::copyRecords() {
    const std::vector<std::uint32_t> pending = idsOf(sync_, pendingCategory, recordsInOnePass + 1);
    last_ = pending.size() <= recordsInOnePass;
    for (std::size_t i = 0; i < std::min(pending.size(), recordsInOnePass); ++i) {
        if (copyRecord(*sync_.records().find(pending[i]))) continue;
        last_ = false;
        unusableRecord_ = pending[i];
        return false;
    }
    return true;
}

bool CopyPass::copyRecord(const HandheldRecord& pending) {
    if (pending.data.size() < pendingHeaderBytes || pending.data[1] >= HandheldRecord::categories)
        return false;
    const std::vector<std::uint8_t> data(pending.data.begin() + pendingHeaderBytes, pending.data.end());
    const bool secret = (pending.attributes & HandheldRecord::secret) != 0;
    const std::uint32_t id = application_.writeRecord(0, pending.data[1], secret, data);
    if (id == 0) return false;
    copied_[pending.id] = id;
    sync_.eraseRecord(pending.id);
    return true;
}

void CopyPass::fillHoles() {
    for (const std::uint32_t id : idsOf(sync_, fixupCategory)) {
        const HandheldRecord& fixups = *sync_.records().find(id);
        if (last_ || namesCopied(fixups)) fillHoles(fixups);
    }
}

// Most records of many are for other passes than this one.
bool CopyPass::namesCopied(const HandheldRecord& fixups) const {
    if (copied_.empty()) return false;
    const std::uint32_t first = copied_.begin()->first;
    const std::uint32_t last = copied_.rbegin()->first;
    for (std::size_t at = 1; at < fixups.data.size(); at += fixupEntryBytes) {
        const std::uint32_t id = readFixup(&fixups.data[at]).pendingId;
        if (id >= first && id <= last && copied_.contains(id)) return true;
    }
    return false;
}

// Entries for records that still wait stay. After the last pass nothing waits: an entry that is left then
// names a record that never was, and goes with the others.
void CopyPass::fillHoles(const HandheldRecord& fixups) {
    std::vector<std::uint8_t> left = {fixups.data[0]};
    for (std::size_t at = 1; at < fixups.data.size(); at += fixupEntryBytes) {
        const Fixup fixup = readFixup(&fixups.data[at]);
        auto copy = copied_.find(fixup.pendingId);
        if (copy != copied_.end())
            sync_.patchRecord(fixup.blockId, fixup.offset, toBytes24(copy->second));
        else
            left.insert(left.end(), &fixups.data[at], &fixups.data[at] + fixupEntryBytes);
    }
    if (left.size() == 1 || last_)
        sync_.eraseRecord(fixups.id);
    else if (left.size() != fixups.data.size())
        sync_.writeRecord(fixups.id, fixupCategory, false, std::move(left));
}

} // namespace tsr
