#include "device/PalmDatabase.h"

#include <algorithm>
#include <iterator>
#include <vector>

#include "device/fourCharacterCode.h"
#include "foundation/GeneralError.h"
#include "foundation/PalmSyncApiError.h"

namespace tsr {

namespace {

constexpr std::int32_t notFound = static_cast<std::int32_t>(PalmSyncApiError::notFound);
constexpr std::uint32_t limitExceeded = 0x4018;
constexpr std::size_t mostRecords = 65535; // in a database; a device that walks on is out of order
constexpr std::uint8_t readWrite = 0xC0;
constexpr std::uint8_t readWriteExclusive = 0xE0;

void raiseUnlessGood(std::int32_t result, const char* function) {
    if (result != 0) throw PalmSyncApiError(static_cast<std::uint32_t>(result), function);
}

// Looks for the first or the next database; false when there is none.
bool find(DatabaseSearchBlock& search, DatabaseInfoBlock& found) {
    const std::int32_t result = SyncFindDbByTypeCreator(&search, &found);
    if (result == notFound) return false;
    raiseUnlessGood(result, "SyncFindDbByTypeCreator");
    return true;
}

std::string nameOf(const DatabaseInfoBlock& found) {
    return std::string(std::begin(found.name), std::find(std::begin(found.name), std::end(found.name), '\0'));
}

std::uint8_t open(const std::string& name, std::int32_t card, std::uint8_t mode) {
    std::uint8_t handle = 0;
    raiseUnlessGood(SyncOpenDB(name.c_str(), card, &handle, mode), "SyncOpenDB");
    return handle;
}

std::uint8_t create(std::uint32_t creator, std::uint32_t type, const std::string& name, std::uint8_t card,
                    bool flagged) {
    DatabaseCreateBlock block{};
    block.creator = creator;
    block.flags = flagged ? 0x40 : 0;
    block.cardNumber = card;
    name.copy(block.name, sizeof block.name - 1);
    block.type = type;
    block.version = 1;
    raiseUnlessGood(SyncCreateDB(&block), "SyncCreateDB");
    return block.fileHandle;
}

} // namespace

CountedPtr<PalmDatabase> PalmDatabase::openByName(const std::string& name, std::int32_t card) {
    return CountedPtr<PalmDatabase>(new PalmDatabase(open(name, card, readWrite)));
}

CountedPtr<PalmDatabase> PalmDatabase::openOrCreate(std::uint32_t creator, std::uint32_t type,
                                                    const std::string& name, std::uint8_t card,
                                                    bool flagged) {
    DatabaseSearchBlock search{0xC0, 0x80, type, creator};
    DatabaseInfoBlock found{};
    if (!find(search, found)) {
        return CountedPtr<PalmDatabase>(new PalmDatabase(create(creator, type, name, card, flagged)));
    }
    const std::string foundName = nameOf(found);
    const std::uint32_t foundCard = found.cardNumber;
    search.searchFlags = 0;
    if (find(search, found)) {
        throw GeneralError(Message::DuplicateDatabases)
            << Tag('c') << fourCharacters(creator) << Tag('t') << fourCharacters(type) << Tag("c1")
            << foundCard << Tag("n1") << foundName << Tag("c2") << found.cardNumber << Tag("n2")
            << nameOf(found);
    }
    return CountedPtr<PalmDatabase>(
        new PalmDatabase(open(foundName, static_cast<std::int32_t>(foundCard), readWriteExclusive)));
}

void PalmDatabase::deleteDatabase(const std::string& name, std::int32_t card) {
    raiseUnlessGood(SyncDeleteDB(name.c_str(), card), "SyncDeleteDB");
}

PalmDatabase::~PalmDatabase() {
    try {
        close();
    } catch (...) { // nobody is left to be told
    }
}

void PalmDatabase::close() {
    raiseUnlessGood(SyncCloseDBEx(handle_, closeOption_ ? 0x40 : 0), "SyncCloseDB");
}

std::int32_t PalmDatabase::call(RecordCall function, PalmRecordBuffer& buffer) {
    RawRecordInfo& raw = buffer.rawForCall();
    raw.fileHandle = handle_;
    const std::int32_t result = function(&raw);
    buffer.afterDeviceCall();
    return result;
}

// What a reader has bound ends with the record that it was bound to; a write leaves it alone.
std::int32_t PalmDatabase::read(RecordCall function, PalmRecordBuffer& buffer) {
    buffer.resetCursor();
    return call(function, buffer);
}

// A read that may be repeated: it is, until the record fits.
std::int32_t PalmDatabase::readWhole(RecordCall function, PalmRecordBuffer& buffer) {
    for (;;) {
        const std::int32_t result = read(function, buffer);
        if (result != 0 || buffer.holdsAll()) return result;
        buffer.growForDevice();
    }
}

void PalmDatabase::readRecordById(PalmRecordBuffer& buffer, std::uint32_t id) {
    buffer.clear();
    buffer.setRecordId(id);
    raiseUnlessGood(readWhole(SyncReadRecordById, buffer), "SyncReadRecordById");
}

bool PalmDatabase::readRecordByIndex(PalmRecordBuffer& buffer, std::uint16_t index) {
    buffer.clear();
    buffer.rawForCall().recordIndex = index;
    const std::int32_t result = readWhole(SyncReadRecordByIndex, buffer);
    if (result == notFound) return false;
    raiseUnlessGood(result, "SyncReadRecordByIndex");
    return true;
}

// A sequential read moves the device's position and so must not be repeated: what didn't fit is fetched by
// index, and so is, once more, what did. Deliberate: the results of these second reads are not looked at, but
// for "not found" before the last one; the data of the first good read stands.
bool PalmDatabase::readSequentially(RecordCall function, const char* name, PalmRecordBuffer& buffer) {
    std::int32_t result = read(function, buffer);
    if (result == 0 && ++walked_ > mostRecords) throw PalmSyncApiError(limitExceeded, name);
    for (bool first = true, done = false; !done; first = false) {
        if (result == notFound) return false;
        if (first) raiseUnlessGood(result, name);
        done = buffer.holdsAll();
        if (!done) buffer.growForDevice();
        result = read(SyncReadRecordByIndex, buffer);
    }
    return true;
}

bool PalmDatabase::readFirstInCategory(PalmRecordBuffer& buffer, std::int16_t category) {
    resetRecordIndex();
    buffer.clear();
    buffer.setCategoryId(category);
    return readNextInCategory(buffer);
}

bool PalmDatabase::readNextInCategory(PalmRecordBuffer& buffer) {
    return readSequentially(SyncReadNextRecInCategory, "SyncReadNextRecInCategory", buffer);
}

bool PalmDatabase::readFirstModified(PalmRecordBuffer& buffer) {
    resetRecordIndex();
    buffer.clear();
    return readNextModified(buffer);
}

bool PalmDatabase::readNextModified(PalmRecordBuffer& buffer) {
    return readSequentially(SyncReadNextModifiedRec, "SyncReadNextModifiedRec", buffer);
}

void PalmDatabase::writeRecord(PalmRecordBuffer& buffer) {
    raiseUnlessGood(call(SyncWriteRec, buffer), "SyncWriteRec");
}

void PalmDatabase::deleteRecord(PalmRecordBuffer& buffer) {
    raiseUnlessGood(call(SyncDeleteRec, buffer), "SyncDeleteRec");
}

void PalmDatabase::purgeDeletedRecords() {
    raiseUnlessGood(SyncPurgeDeletedRecs(handle_), "SyncPurgeDeletedRecs");
}

void PalmDatabase::resetSyncFlags() { raiseUnlessGood(SyncResetSyncFlags(handle_), "SyncResetSyncFlags"); }

void PalmDatabase::resetRecordIndex() {
    walked_ = 0;
    raiseUnlessGood(SyncResetRecordIndex(handle_), "SyncResetRecordIndex");
}

std::uint16_t PalmDatabase::recordCount() {
    std::uint16_t count = 0;
    raiseUnlessGood(SyncGetDBRecordCount(handle_, &count), "SyncGetDBRecordCount");
    return count;
}

void PalmDatabase::readAppInfoBlock(PalmRecordBuffer& buffer) {
    std::vector<std::uint8_t> block(1024);
    AppInfoBlockInfo info{};
    info.totalBytes = static_cast<std::uint16_t>(block.size());
    for (;;) {
        info.buffer = block.data();
        raiseUnlessGood(SyncReadDBAppInfoBlock(handle_, &info), "SyncReadDBAppInfoBlock");
        if (info.bytesRead <= block.size()) break;
        // In 16 bits, where twice 32,768 is 0: the size that the device told then decides.
        info.totalBytes = std::max(static_cast<std::uint16_t>(2 * block.size()), info.bytesRead);
        block.resize(info.totalBytes);
    }
    buffer.appendBytes(block.data(), info.bytesRead);
}

void PalmDatabase::writeAppInfoBlock(const PalmRecordBuffer& buffer) {
    std::vector<std::uint8_t> block(buffer.data(), buffer.data() + buffer.size());
    AppInfoBlockInfo info{};
    info.totalBytes = static_cast<std::uint16_t>(block.size());
    info.bytesRead = info.totalBytes;
    info.buffer = block.data();
    raiseUnlessGood(SyncWriteDBAppInfoBlock(handle_, &info), "SyncWriteDBAppInfoBlock");
}

} // namespace tsr
