#include "support/ScriptedSyncManager.h"

#include <algorithm>
#include <cstring>

#include "platform/hotSyncLog.h"
#include "support/bytes.h"

namespace tsr::test {

ScriptedSyncManager& ScriptedSyncManager::instance() {
    static ScriptedSyncManager manager;
    return manager;
}

void ScriptedSyncManager::reset() { *this = ScriptedSyncManager(); }

template <typename Block>
void ScriptedSyncManager::add(const std::string& function, std::int32_t result, Effect<Block> effect) {
    answers_[function].push_back(Answer{result, [effect](void* block) {
                                            if (effect && block != nullptr)
                                                effect(*static_cast<Block*>(block));
                                        }});
}

void ScriptedSyncManager::answer(const std::string& function, std::int32_t result) {
    answers_[function].push_back(Answer{result, [](void*) {}});
}

void ScriptedSyncManager::answerRecord(const std::string& function, std::int32_t result,
                                       Effect<RawRecordInfo> effect) {
    add(function, result, std::move(effect));
}

void ScriptedSyncManager::answerFind(std::int32_t result, Effect<DatabaseInfoBlock> effect) {
    add("SyncFindDbByTypeCreator", result, std::move(effect));
}

void ScriptedSyncManager::answerAppInfo(const std::string& function, std::int32_t result,
                                        Effect<AppInfoBlockInfo> effect) {
    add(function, result, std::move(effect));
}

void ScriptedSyncManager::answerModule(std::int32_t result, Effect<RemoteModuleBlock> effect) {
    add("SyncCallRemoteModule", result, std::move(effect));
}

void ScriptedSyncManager::answerPreference(std::int32_t result, Effect<AppPreferenceBlock> effect) {
    add("SyncReadAppPreference", result, std::move(effect));
}

ScriptedSyncManager::Effect<RawRecordInfo> ScriptedSyncManager::record(std::uint32_t id,
                                                                       std::int16_t category,
                                                                       std::uint8_t attributes,
                                                                       std::vector<std::uint8_t> data) {
    return [=](RawRecordInfo& raw) {
        raw.recordId = id;
        raw.categoryId = category;
        raw.attributes = attributes;
        raw.recordSize = static_cast<std::uint32_t>(data.size());
        std::copy_n(data.begin(), std::min<std::size_t>(data.size(), raw.bufferSize), raw.buffer);
    };
}

std::int32_t ScriptedSyncManager::next(const std::string& function, void* block) {
    std::deque<Answer>& queue = answers_[function];
    if (queue.empty()) return function == "SyncFindDbByTypeCreator" ? 0x4003 : 0;
    const Answer answer = queue.front();
    queue.pop_front();
    answer.effect(block);
    return answer.result;
}

} // namespace tsr::test

namespace {

using tsr::test::ScriptedSyncManager;

ScriptedSyncManager& script() { return ScriptedSyncManager::instance(); }

std::string number(std::int64_t value) { return std::to_string(value); }

std::string hex(std::uint32_t value) {
    char text[16];
    std::snprintf(text, sizeof text, "%02X", value);
    return text;
}

std::string dataText(const std::uint8_t* data, std::size_t size) {
    return tsr::test::hexText(std::vector<std::uint8_t>(data, data + size));
}

std::int32_t call(const std::string& function, const std::string& arguments, void* block = nullptr) {
    script().calls.push_back(function + "(" + arguments + ")");
    return script().next(function, block);
}

// Shown where a field that is always 0 isn't.
std::string unlessZero(const char* name, std::uint32_t value) {
    return value == 0 ? std::string() : std::string(", ") + name + ' ' + number(value);
}

std::string recordText(const RawRecordInfo& raw) {
    return "handle " + number(raw.fileHandle) + ", id " + number(raw.recordId) + ", index "
         + number(raw.recordIndex) + ", attributes " + hex(raw.attributes) + ", category "
         + number(raw.categoryId) + ", size " + number(raw.recordSize) + ", room " + number(raw.bufferSize)
         + unlessZero("conduit", raw.conduitId) + unlessZero("reserved", raw.reserved);
}

std::string appInfoText(const AppInfoBlockInfo& block) {
    return ", total " + number(block.totalBytes) + ", read " + number(block.bytesRead)
         + unlessZero("file", static_cast<std::uint8_t>(block.fileName[0]))
         + unlessZero("reserved", block.reserved);
}

std::int32_t recordCall(const std::string& function, RawRecordInfo* raw) {
    return call(function, recordText(*raw), raw);
}

} // namespace

extern "C" {

std::int32_t SyncFindDbByTypeCreator(DatabaseSearchBlock* search, DatabaseInfoBlock* found) {
    return call("SyncFindDbByTypeCreator",
                "options " + hex(search->optionFlags) + ", search " + hex(search->searchFlags) + ", type "
                    + hex(search->type) + ", creator " + hex(search->creator),
                found);
}

std::int32_t SyncOpenDB(const char* name, std::int32_t card, std::uint8_t* handle, std::uint8_t mode) {
    *handle = script().nextHandle++;
    return call("SyncOpenDB", std::string(name) + ", card " + number(card) + ", mode " + hex(mode));
}

std::int32_t SyncCreateDB(DatabaseCreateBlock* block) {
    block->fileHandle = script().nextHandle++;
    return call("SyncCreateDB", std::string(block->name) + ", creator " + hex(block->creator) + ", type "
                                    + hex(block->type) + ", flags " + hex(block->flags) + ", card "
                                    + number(block->cardNumber) + ", version " + number(block->version)
                                    + unlessZero("reserved", block->reserved));
}

std::int32_t SyncCloseDBEx(std::uint8_t handle, std::uint8_t option) {
    return call("SyncCloseDBEx", "handle " + number(handle) + ", option " + hex(option));
}

std::int32_t SyncDeleteDB(const char* name, std::int32_t card) {
    return call("SyncDeleteDB", std::string(name) + ", card " + number(card));
}

std::int32_t SyncReadRecordById(RawRecordInfo* record) { return recordCall("SyncReadRecordById", record); }

std::int32_t SyncReadRecordByIndex(RawRecordInfo* record) {
    return recordCall("SyncReadRecordByIndex", record);
}

std::int32_t SyncReadNextRecInCategory(RawRecordInfo* record) {
    return recordCall("SyncReadNextRecInCategory", record);
}

std::int32_t SyncReadNextModifiedRec(RawRecordInfo* record) {
    return recordCall("SyncReadNextModifiedRec", record);
}

std::int32_t SyncWriteRec(RawRecordInfo* record) {
    const std::int32_t result = recordCall("SyncWriteRec", record);
    script().calls.back() += " " + dataText(record->buffer, record->recordSize);
    return result;
}

std::int32_t SyncDeleteRec(RawRecordInfo* record) { return recordCall("SyncDeleteRec", record); }

std::int32_t SyncResetRecordIndex(std::uint8_t handle) {
    return call("SyncResetRecordIndex", "handle " + number(handle));
}

std::int32_t SyncPurgeDeletedRecs(std::uint8_t handle) {
    return call("SyncPurgeDeletedRecs", "handle " + number(handle));
}

std::int32_t SyncResetSyncFlags(std::uint8_t handle) {
    return call("SyncResetSyncFlags", "handle " + number(handle));
}

std::int32_t SyncGetDBRecordCount(std::uint8_t handle, std::uint16_t* count) {
    *count = 3;
    return call("SyncGetDBRecordCount", "handle " + number(handle));
}

std::int32_t SyncReadDBAppInfoBlock(std::uint8_t handle, AppInfoBlockInfo* block) {
    return call("SyncReadDBAppInfoBlock", "handle " + number(handle) + appInfoText(*block), block);
}

std::int32_t SyncWriteDBAppInfoBlock(std::uint8_t handle, AppInfoBlockInfo* block) {
    return call("SyncWriteDBAppInfoBlock",
                "handle " + number(handle) + appInfoText(*block) + ") ("
                    + dataText(block->buffer, block->bytesRead),
                block);
}

std::int32_t SyncCallRemoteModule(RemoteModuleBlock* block) {
    return call("SyncCallRemoteModule",
                "creator " + hex(block->creator) + ", type " + hex(block->type) + ", action "
                    + hex(block->actionCode) + ", room " + number(block->resultBufferSize) + ", code "
                    + number(block->resultCode) + ", size " + number(block->resultSize) + ") ("
                    + dataText(block->parameter, block->parameterSize),
                block);
}

std::int32_t SyncReadAppPreference(AppPreferenceBlock* block) {
    return call("SyncReadAppPreference",
                "creator " + hex(block->creator) + ", id " + number(block->preferenceId) + ", requested "
                    + number(block->requestedBytes) + ", version " + number(block->version) + ", actual "
                    + number(block->actualBytes) + ", backed up " + number(block->backedUp) + ", room "
                    + number(block->bufferSize) + unlessZero("start", block->reservedStart)
                    + unlessZero("reserved", block->reserved),
                block);
}

std::int32_t SyncReadSysDateTime(std::uint32_t* time) {
    *time = script().deviceTime;
    return call("SyncReadSysDateTime", "");
}

std::uint16_t SyncGetHHOSVersion(std::uint16_t* minor) {
    call("SyncGetHHOSVersion", "");
    *minor = script().osMinor;
    return script().osMajor;
}

std::int32_t SyncGetAPIVersion(std::uint32_t* major, std::uint32_t* minor) {
    *major = 2;
    *minor = 3;
    return call("SyncGetAPIVersion", "");
}

std::int32_t SyncYieldCycles(std::uint16_t milliseconds) {
    const std::int32_t result = call("SyncYieldCycles", number(milliseconds));
    if (script().yieldFault) script().yieldFault();
    return result;
}

std::uint16_t SyncHHToHostWord(std::uint16_t value) {
    return static_cast<std::uint16_t>(value << 8 | value >> 8);
}

std::uint16_t SyncHostToHHWord(std::uint16_t value) { return SyncHHToHostWord(value); }

std::uint32_t SyncHHToHostDWord(std::uint32_t value) {
    return value << 24 | (value & 0xFF00) << 8 | (value >> 8 & 0xFF00) | value >> 24;
}

std::uint32_t SyncHostToHHDWord(std::uint32_t value) { return SyncHHToHostDWord(value); }

std::int32_t HsLogOpen() {
    script().calls.push_back("HsLogOpen()");
    return script().logOpenResult;
}

std::int32_t HsLogClose() {
    script().calls.push_back("HsLogClose()");
    if (script().closeFault) script().closeFault();
    return 0;
}

std::int32_t HsLogAddEntry(const char* text, std::int32_t activity, std::int32_t zero) {
    if (script().logFault) script().logFault();
    script().log.emplace_back(text, activity);
    if (zero != 0) script().log.emplace_back("third argument", zero);
    return 0;
}

} // extern "C"
