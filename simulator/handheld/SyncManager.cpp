#include "handheld/SyncManager.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "device/fourCharacterCode.h"
#include "handheld/remoteModule.h"
#include "handheld/syncResult.h"

namespace tsr {

namespace {

constexpr std::uint8_t newSearch = 0x80;
constexpr std::size_t nameBytes = sizeof(DatabaseCreateBlock::name);

template <typename... Values>
std::string formatted(const char* format, Values... values) {
    char text[160];
    std::snprintf(text, sizeof text, format, values...);
    return text;
}

unsigned handleOf(const RawRecordInfo* record) { return record ? record->fileHandle : 0U; }

std::string describeId(const RawRecordInfo* record) {
    return formatted("%u, id 0x%06X", handleOf(record),
                     record ? static_cast<unsigned>(record->recordId) : 0U);
}

std::string describeDatabase(const char* name, std::int32_t card) {
    return formatted("\"%.31s\", %d", name ? name : "", static_cast<int>(card));
}

// Empty when the name has no NUL within its 32 bytes, and as no database has an empty name, nothing is found
// by it.
std::string databaseName(const char* name) {
    const auto* end = name ? static_cast<const char*>(std::memchr(name, 0, nameBytes)) : nullptr;
    return end ? std::string(name, end) : std::string();
}

void copyFitting(const std::vector<std::uint8_t>& data, std::uint8_t* buffer, std::size_t capacity) {
    const std::size_t bytes = std::min(data.size(), capacity);
    if (buffer && bytes > 0) std::memcpy(buffer, data.data(), bytes);
}

void show(const HandheldRecord& record, std::size_t index, RawRecordInfo& block) {
    block.recordId = record.id;
    block.recordIndex = static_cast<std::uint16_t>(index);
    block.attributes = record.attributes;
    block.categoryId = record.category;
    block.recordSize = static_cast<std::uint32_t>(record.data.size());
    copyFitting(record.data, block.buffer, block.bufferSize);
}

std::vector<std::uint8_t> copyOf(const std::uint8_t* data, std::size_t bytes) {
    return bytes == 0 ? std::vector<std::uint8_t>() : std::vector<std::uint8_t>(data, data + bytes);
}

bool canBeWritten(const RawRecordInfo& record) {
    return record.recordId <= HandheldRecord::maxId && record.categoryId >= 0
        && record.categoryId < HandheldRecord::categories && record.recordSize <= record.bufferSize
        && (record.buffer || record.recordSize == 0);
}

} // namespace

void SyncManager::closeAll() {
    open_.clear();
    searchPosition_.clear();
}

std::int32_t SyncManager::findDbByTypeCreator(const DatabaseSearchBlock* search, DatabaseInfoBlock* found) {
    auto describe = [&] {
        if (!search) return std::string();
        return formatted("'%s', '%s', 0x%02X", fourCharacters(search->type).c_str(),
                         fourCharacters(search->creator).c_str(), static_cast<unsigned>(search->searchFlags));
    };
    return calls_.run("SyncFindDbByTypeCreator", describe, [&] {
        if (!search || !found) return syncResult::badParameter;
        return findNext(*search, *found);
    });
}

std::int32_t SyncManager::findNext(const DatabaseSearchBlock& search, DatabaseInfoBlock& found) {
    if ((search.searchFlags & newSearch) != 0) searchPosition_.clear();
    auto next = handheld_.databases.upper_bound(searchPosition_);
    for (; next != handheld_.databases.end(); ++next) {
        const DatabaseHeader& header = next->second.header();
        if (header.type != search.type || header.creator != search.creator) continue;
        searchPosition_ = header.name;
        found.cardNumber = 0;
        std::memset(found.name, 0, sizeof found.name);
        std::memcpy(found.name, header.name.data(), header.name.size());
        return syncResult::success;
    }
    return syncResult::notFound;
}

std::int32_t SyncManager::openDb(const char* name, std::int32_t card, std::uint8_t* handle,
                                 std::uint8_t mode) {
    auto describe = [&] {
        return describeDatabase(name, card) + formatted(", 0x%02X", static_cast<unsigned>(mode));
    };
    return calls_.run("SyncOpenDB", describe, [&] {
        if (!name || !handle || (mode & (readMode | writeMode)) == 0) return syncResult::badParameter;
        HandheldDatabase* database = card == 0 ? handheld_.find(databaseName(name)) : nullptr;
        return database ? open(*database, mode, *handle) : syncResult::notFound;
    });
}

std::int32_t SyncManager::open(HandheldDatabase& database, std::uint8_t mode, std::uint8_t& handle) {
    if ((mode & writeMode) != 0 && (database.header().attributes & DatabaseHeader::readOnly) != 0) {
        return syncResult::readOnly;
    }
    for (const auto& [other, state] : open_) {
        if (state.database == &database && ((state.mode | mode) & exclusiveMode) != 0)
            return syncResult::alreadyOpen;
    }
    std::uint8_t free = 1;
    while (open_.contains(free)) ++free;
    if (free == UINT8_MAX) return syncResult::tooManyOpen;
    open_[free] = {&database, mode};
    handle = free;
    return syncResult::success;
}

std::int32_t SyncManager::createDb(DatabaseCreateBlock* block) {
    auto describe = [&] {
        return describeDatabase(block ? block->name : nullptr, block ? block->cardNumber : 0);
    };
    return calls_.run("SyncCreateDB", describe,
                      [&] { return block ? create(*block) : syncResult::badParameter; });
}

std::int32_t SyncManager::create(DatabaseCreateBlock& block) {
    const std::string name = databaseName(block.name);
    if (name.empty() || block.cardNumber != 0) return syncResult::badParameter;
    if ((block.flags & DatabaseHeader::resource) != 0) return syncResult::notSupported;
    if (handheld_.find(name)) return syncResult::alreadyExists;
    const auto attributes = static_cast<std::uint16_t>(block.flags);
    HandheldDatabase& database = handheld_.create(name, block.type, block.creator, attributes, block.version);
    std::uint8_t handle = 0;
    const std::int32_t result = open(database, readMode | writeMode | exclusiveMode, handle);
    if (result != syncResult::success) handheld_.databases.erase(name);
    block.fileHandle = handle;
    return result;
}

std::int32_t SyncManager::closeDb(std::uint8_t handle, std::uint8_t option) {
    auto describe = [&] { return formatted("%u, 0x%02X", unsigned{handle}, unsigned{option}); };
    return calls_.run("SyncCloseDBEx", describe, [&] {
        return withOpen(handle, [&](OpenDatabase&) {
            open_.erase(handle);
            return save();
        });
    });
}

std::int32_t SyncManager::deleteDb(const char* name, std::int32_t card) {
    return calls_.run(
        "SyncDeleteDB", [&] { return describeDatabase(name, card); },
        [&] {
            if (!name) return syncResult::badParameter;
            const HandheldDatabase* database = card == 0 ? handheld_.find(databaseName(name)) : nullptr;
            if (!database) return syncResult::notFound;
            if (isOpen(*database)) return syncResult::alreadyOpen;
            handheld_.databases.erase(databaseName(name));
            return save();
        });
}

std::int32_t SyncManager::readRecordById(RawRecordInfo* record) {
    return calls_.run(
        "SyncReadRecordById", [&] { return describeId(record); },
        [&] {
            if (!record) return syncResult::badParameter;
            return withOpen(record->fileHandle, [&](OpenDatabase& open) {
                const RecordList& records = open.database->records();
                const HandheldRecord* found = records.find(record->recordId);
                if (!found) return syncResult::notFound;
                show(*found, records.indexOf(found->id), *record);
                return syncResult::success;
            });
        });
}

std::int32_t SyncManager::readRecordByIndex(RawRecordInfo* record) {
    auto describe = [&] {
        return formatted("%u, index %u", handleOf(record), record ? unsigned{record->recordIndex} : 0U);
    };
    return calls_.run("SyncReadRecordByIndex", describe, [&] {
        if (!record) return syncResult::badParameter;
        return withOpen(record->fileHandle, [&](OpenDatabase& open) {
            const RecordList& records = open.database->records();
            if (record->recordIndex >= records.size()) return syncResult::notFound;
            show(records.at(record->recordIndex), record->recordIndex, *record);
            return syncResult::success;
        });
    });
}

template <typename Wanted>
std::int32_t SyncManager::readNext(RawRecordInfo& record, Wanted wanted) {
    return withOpen(record.fileHandle, [&](OpenDatabase& open) {
        const RecordList& records = open.database->records();
        const HandheldRecord* next = records.findFrom(open.position, wanted);
        if (!next) return syncResult::notFound;
        show(*next, open.position++, record);
        return syncResult::success;
    });
}

std::int32_t SyncManager::readNextRecInCategory(RawRecordInfo* record) {
    auto describe = [&] {
        return formatted("%u, category %d", handleOf(record), record ? int{record->categoryId} : 0);
    };
    return calls_.run("SyncReadNextRecInCategory", describe, [&] {
        if (!record || record->categoryId < 0 || record->categoryId >= HandheldRecord::categories) {
            return syncResult::badParameter;
        }
        const auto category = static_cast<std::uint8_t>(record->categoryId);
        return readNext(
            *record, [&](const HandheldRecord& next) { return next.category == category && !next.isGone(); });
    });
}

std::int32_t SyncManager::readNextModifiedRec(RawRecordInfo* record) {
    return calls_.run(
        "SyncReadNextModifiedRec", [&] { return formatted("%u", handleOf(record)); },
        [&] {
            if (!record) return syncResult::badParameter;
            return readNext(*record, [](const HandheldRecord& next) { return next.isModified(); });
        });
}

std::int32_t SyncManager::writeRec(RawRecordInfo* record) {
    auto describe = [&] {
        if (!record) return std::string();
        return describeId(record)
             + formatted(", category %d, %u bytes", int{record->categoryId},
                         static_cast<unsigned>(record->recordSize));
    };
    return calls_.run("SyncWriteRec", describe, [&] {
        if (!record) return syncResult::badParameter;
        return withWritable(record->fileHandle,
                            [&](OpenDatabase& open) { return write(*open.database, *record); });
    });
}

// Of the attributes only "secret" is the desktop's to set.
std::int32_t SyncManager::write(HandheldDatabase& database, RawRecordInfo& record) {
    if (!canBeWritten(record)) return syncResult::badParameter;
    const bool secret = (record.attributes & HandheldRecord::secret) != 0;
    const std::uint32_t id =
        database.writeRecord(record.recordId, static_cast<std::uint8_t>(record.categoryId), secret,
                             copyOf(record.buffer, record.recordSize));
    if (id == 0) return syncResult::storeFull;
    record.recordId = id;
    return syncResult::success;
}

std::int32_t SyncManager::deleteRec(const RawRecordInfo* record) {
    return calls_.run(
        "SyncDeleteRec", [&] { return describeId(record); },
        [&] {
            if (!record) return syncResult::badParameter;
            return withWritable(record->fileHandle, [&](OpenDatabase& open) {
                return open.database->eraseRecord(record->recordId) ? syncResult::success
                                                                    : syncResult::notFound;
            });
        });
}

std::int32_t SyncManager::resetRecordIndex(std::uint8_t handle) {
    return calls_.run(
        "SyncResetRecordIndex", [&] { return formatted("%u", unsigned{handle}); },
        [&] {
            return withOpen(handle, [](OpenDatabase& open) {
                open.position = 0;
                return syncResult::success;
            });
        });
}

std::int32_t SyncManager::purgeDeletedRecs(std::uint8_t handle) {
    return calls_.run(
        "SyncPurgeDeletedRecs", [&] { return formatted("%u", unsigned{handle}); },
        [&] {
            return withWritable(handle, [](OpenDatabase& open) {
                open.database->purgeDeletedRecords();
                return syncResult::success;
            });
        });
}

std::int32_t SyncManager::resetSyncFlags(std::uint8_t handle) {
    return calls_.run(
        "SyncResetSyncFlags", [&] { return formatted("%u", unsigned{handle}); },
        [&] {
            return withWritable(handle, [](OpenDatabase& open) {
                open.database->resetSyncFlags();
                return syncResult::success;
            });
        });
}

std::int32_t SyncManager::getDbRecordCount(std::uint8_t handle, std::uint16_t* count) {
    return calls_.run(
        "SyncGetDBRecordCount", [&] { return formatted("%u", unsigned{handle}); },
        [&] {
            if (!count) return syncResult::badParameter;
            return withOpen(handle, [&](OpenDatabase& open) {
                *count = static_cast<std::uint16_t>(open.database->records().size());
                return syncResult::success;
            });
        });
}

std::int32_t SyncManager::readDbAppInfoBlock(std::uint8_t handle, AppInfoBlockInfo* block) {
    return calls_.run(
        "SyncReadDBAppInfoBlock", [&] { return formatted("%u", unsigned{handle}); },
        [&] {
            if (!block) return syncResult::badParameter;
            return withOpen(handle, [&](OpenDatabase& open) {
                const auto& data = open.database->appInfo();
                if (!data) return syncResult::notFound;
                block->bytesRead = static_cast<std::uint16_t>(data->size());
                copyFitting(*data, block->buffer, block->totalBytes);
                return syncResult::success;
            });
        });
}

// The block to write has `bytesRead` bytes: that is what the real library sends.
std::int32_t SyncManager::writeDbAppInfoBlock(std::uint8_t handle, const AppInfoBlockInfo* block) {
    auto describe = [&] {
        return formatted("%u, %u bytes", unsigned{handle}, block ? unsigned{block->bytesRead} : 0U);
    };
    return calls_.run("SyncWriteDBAppInfoBlock", describe, [&] {
        if (!block || block->bytesRead > block->totalBytes || (!block->buffer && block->bytesRead > 0)) {
            return syncResult::badParameter;
        }
        return withWritable(handle, [&](OpenDatabase& open) {
            open.database->setAppInfo(copyOf(block->buffer, block->bytesRead));
            return syncResult::success;
        });
    });
}

std::int32_t SyncManager::callRemoteModule(RemoteModuleBlock* block) {
    auto describe = [&] {
        if (!block) return std::string();
        return formatted("'%s', '%s', 0x%04X", fourCharacters(block->creator).c_str(),
                         fourCharacters(block->type).c_str(), unsigned{block->actionCode});
    };
    return calls_.run("SyncCallRemoteModule", describe, [&] {
        if (!block || (!block->parameter && block->parameterSize > 0)) return syncResult::badParameter;
        if (!isRemoteModule(block->creator, block->type)) return syncResult::notFound;
        // The module opens the databases that it works on, so the desktop must have let go of them.
        if (!open_.empty()) return syncResult::alreadyOpen;
        const RemoteModuleAnswer answer = calls_.moduleAnswer()
                                            ? RemoteModuleAnswer{0, *calls_.moduleAnswer()}
                                            : runRemoteModule(handheld_, block->actionCode,
                                                              copyOf(block->parameter, block->parameterSize));
        block->resultCode = answer.code;
        block->resultSize = static_cast<std::uint32_t>(answer.result.size());
        copyFitting(answer.result, block->resultBuffer, block->resultBufferSize);
        return save();
    });
}

std::int32_t SyncManager::readAppPreference(AppPreferenceBlock* block) {
    auto describe = [&] {
        if (!block) return std::string();
        return formatted("'%s', %u", fourCharacters(block->creator).c_str(), unsigned{block->preferenceId});
    };
    return calls_.run("SyncReadAppPreference", describe,
                      [&] { return block ? readPreference(*block) : syncResult::badParameter; });
}

std::int32_t SyncManager::readPreference(AppPreferenceBlock& block) const {
    auto found = handheld_.preferences.find({block.creator, block.preferenceId, block.backedUp != 0});
    if (found == handheld_.preferences.end()) return syncResult::notFound;
    const Preference& preference = found->second;
    block.version = preference.version;
    block.actualBytes = static_cast<std::uint16_t>(preference.data.size());
    copyFitting(preference.data, block.buffer, std::min<std::size_t>(block.requestedBytes, block.bufferSize));
    return syncResult::success;
}

std::int32_t SyncManager::readSysDateTime(std::uint32_t* time) {
    return calls_.run(
        "SyncReadSysDateTime", [] { return std::string(); },
        [&] {
            if (!time) return syncResult::badParameter;
            *time = handheld_.now();
            return syncResult::success;
        });
}

std::uint16_t SyncManager::getHandheldOsVersion(std::uint16_t* minor) {
    std::uint16_t major = 0;
    calls_.run(
        "SyncGetHHOSVersion", [] { return std::string(); },
        [&] {
            if (!minor) return syncResult::badParameter;
            major = handheld_.systemVersion.major;
            *minor = handheld_.systemVersion.minor;
            return syncResult::success;
        });
    return major;
}

std::int32_t SyncManager::getApiVersion(std::uint32_t* major, std::uint32_t* minor) {
    return calls_.run(
        "SyncGetAPIVersion", [] { return std::string(); },
        [&] {
            if (!major || !minor) return syncResult::badParameter;
            *major = handheld_.apiVersion.major;
            *minor = handheld_.apiVersion.minor;
            return syncResult::success;
        });
}

std::int32_t SyncManager::yieldCycles(std::uint16_t milliseconds) {
    return calls_.run(
        "SyncYieldCycles", [&] { return formatted("%u", unsigned{milliseconds}); },
        [] { return syncResult::success; });
}

bool SyncManager::isOpen(const HandheldDatabase& database) const {
    return std::any_of(open_.begin(), open_.end(),
                       [&](const auto& entry) { return entry.second.database == &database; });
}

std::int32_t SyncManager::save() { return !save_ || save_() ? syncResult::success : syncResult::systemError; }

template <typename Work>
std::int32_t SyncManager::withOpen(std::uint8_t handle, Work work) {
    if (open_.empty()) return syncResult::noneOpen;
    auto found = open_.find(handle);
    return found == open_.end() ? syncResult::invalidArgument : work(found->second);
}

template <typename Work>
std::int32_t SyncManager::withWritable(std::uint8_t handle, Work work) {
    return withOpen(handle, [&](OpenDatabase& open) {
        return (open.mode & writeMode) == 0 ? syncResult::readOnly : work(open);
    });
}

} // namespace tsr
