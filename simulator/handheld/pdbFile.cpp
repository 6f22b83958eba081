#include "handheld/pdbFile.h"

#include <algorithm>
#include <string>

#include "handheld/HandheldError.h"

namespace tsr {

namespace {

constexpr std::size_t nameBytes = 32;
constexpr std::size_t headerBytes = 78;
constexpr std::size_t entryBytes = 8;
constexpr std::uint8_t fileAttributes = 0xF0;
constexpr std::uint8_t fileCategory = 0x0F;

using Bytes = std::vector<std::uint8_t>;

std::uint16_t read16(const Bytes& file, std::size_t at) {
    return static_cast<std::uint16_t>(file[at] << 8 | file[at + 1]);
}

std::uint32_t read32(const Bytes& file, std::size_t at) {
    return std::uint32_t{read16(file, at)} << 16 | read16(file, at + 2);
}

void append16(Bytes& file, std::size_t value) {
    file.push_back(static_cast<std::uint8_t>(value >> 8));
    file.push_back(static_cast<std::uint8_t>(value));
}

void append32(Bytes& file, std::size_t value) {
    append16(file, value >> 16);
    append16(file, value & 0xFFFF);
}

void append(Bytes& file, const Bytes& more) { file.insert(file.end(), more.begin(), more.end()); }

Bytes slice(const Bytes& file, std::size_t begin, std::size_t end) {
    return {file.begin() + static_cast<std::ptrdiff_t>(begin),
            file.begin() + static_cast<std::ptrdiff_t>(end)};
}

// A file on its way to a database: the places of its blocks first, then their contents.
class PdbReader {
public:
    explicit PdbReader(const Bytes& file) : file_(file) {}

    HandheldDatabase read() {
        checkHeader();
        findBlocks();
        DatabaseHeader header = readHeader();
        HandheldDatabase database(header);
        readBlocks(database);
        lastId_ = lastId();
        const std::uint32_t lastInFile = lastId_;
        readRecords(database);
        if (lastId_ != lastInFile)
            header.uniqueIdSeed = lastId_;
        else
            database.markSaved();
        database.setHeader(header); // filling the database has counted as changes
        return database;
    }

private:
    void checkHeader() const {
        if (file_.size() < headerBytes) throw HandheldError("the file is shorter than its header");
        const auto nameEnd = file_.begin() + nameBytes;
        const auto end = std::find(file_.begin(), nameEnd, std::uint8_t{0});
        if (end == file_.begin() || end == nameEnd)
            throw HandheldError("the name of the database is empty or has no end");
        if (isResourceFile(file_)) throw HandheldError("the file holds resources, not records");
        if (file_.size() < listEnd()) throw HandheldError("the file ends within its list of records");
    }

    std::size_t recordCount() const { return read16(file_, 76); }
    std::size_t listEnd() const { return headerBytes + entryBytes * recordCount(); }
    std::size_t recordStart(std::size_t index) const {
        return read32(file_, headerBytes + entryBytes * index);
    }

    // Blocks and records follow each other without holes, so each one ends where the next one starts.
    void findBlocks() {
        firstRecord_ = recordCount() > 0 ? recordStart(0) : file_.size();
        sortInfo_ = read32(file_, 56) != 0 ? read32(file_, 56) : firstRecord_;
        appInfo_ = read32(file_, 52) != 0 ? read32(file_, 52) : sortInfo_;
        std::size_t last = listEnd();
        for (std::size_t place : {appInfo_, sortInfo_, firstRecord_}) last = checkOrder(last, place);
        for (std::size_t i = 0; i < recordCount(); ++i) last = checkOrder(last, recordStart(i));
    }

    std::size_t checkOrder(std::size_t before, std::size_t place) const {
        if (place < before || place > file_.size()) {
            throw HandheldError("an offset in the file is out of order or behind its end");
        }
        return place;
    }

    DatabaseHeader readHeader() const {
        DatabaseHeader header;
        header.name.assign(file_.begin(), std::find(file_.begin(), file_.end(), std::uint8_t{0}));
        header.attributes = read16(file_, 32);
        header.version = read16(file_, 34);
        header.creationTime = read32(file_, 36);
        header.modificationTime = read32(file_, 40);
        header.backupTime = read32(file_, 44);
        header.modificationNumber = read32(file_, 48);
        header.type = read32(file_, 60);
        header.creator = read32(file_, 64);
        header.uniqueIdSeed = read32(file_, 68);
        return header;
    }

    void readBlocks(HandheldDatabase& database) const {
        FileRemains remains;
        remains.behindName = slice(file_, database.name().size(), nameBytes);
        remains.nextRecordList = read32(file_, 72);
        // Without any block the bytes behind the list are all gap.
        remains.gap = slice(file_, listEnd(), appInfo_);
        database.setFileRemains(std::move(remains));
        if (read32(file_, 52) != 0) database.setAppInfo(checkedBlock(appInfo_, sortInfo_));
        if (read32(file_, 56) != 0) database.setSortInfo(checkedBlock(sortInfo_, firstRecord_));
    }

    Bytes checkedBlock(std::size_t begin, std::size_t end) const {
        if (end - begin > HandheldRecord::maxBytes) throw HandheldError("a block of the file is too large");
        return slice(file_, begin, end);
    }

    void readRecords(HandheldDatabase& database) {
        for (std::size_t i = 0; i < recordCount(); ++i) {
            HandheldRecord record = readRecord(i);
            if (record.id == 0) record.id = ++lastId_;
            const std::uint32_t id = record.id;
            if (id > HandheldRecord::maxId) throw HandheldError("the ids of the file are used up");
            if (!database.putRecord(std::move(record))) {
                throw HandheldError("two records of the file have the id " + std::to_string(id));
            }
        }
    }

    // The last id given away: one that the file names, in a record or as its seed.
    std::uint32_t lastId() const {
        std::uint32_t last = read32(file_, 68) & HandheldRecord::maxId;
        for (std::size_t i = 0; i < recordCount(); ++i) last = std::max(last, recordId(i));
        return last;
    }

    std::uint32_t recordId(std::size_t index) const {
        return read32(file_, headerBytes + entryBytes * index + 4) & HandheldRecord::maxId;
    }

    HandheldRecord readRecord(std::size_t index) const {
        const std::size_t entry = headerBytes + entryBytes * index;
        HandheldRecord record;
        record.id = recordId(index);
        record.attributes = file_[entry + 4] & fileAttributes;
        record.category = file_[entry + 4] & fileCategory;
        record.data = checkedBlock(recordStart(index),
                                   index + 1 < recordCount() ? recordStart(index + 1) : file_.size());
        const bool deleted = (record.attributes & HandheldRecord::deleted) != 0;
        if (deleted && !record.data.empty())
            record.attributes ^= HandheldRecord::deleted | HandheldRecord::archived;
        return record;
    }

    const Bytes& file_;
    std::size_t appInfo_ = 0;
    std::size_t sortInfo_ = 0;
    std::size_t firstRecord_ = 0;
    std::uint32_t lastId_ = 0;
};

class PdbWriter {
public:
    explicit PdbWriter(const HandheldDatabase& database) : database_(database) {}

    Bytes write() {
        writeHeader();
        writeList();
        append(file_, database_.fileRemains().gap);
        if (database_.appInfo()) append(file_, *database_.appInfo());
        if (database_.sortInfo()) append(file_, *database_.sortInfo());
        database_.records().forEach([&](const HandheldRecord& record) { append(file_, dataInFile(record)); });
        return std::move(file_);
    }

private:
    static const Bytes& dataInFile(const HandheldRecord& record) {
        static const Bytes none;
        return (record.attributes & HandheldRecord::deleted) != 0 ? none : record.data;
    }

    static std::uint8_t attributesInFile(const HandheldRecord& record) {
        const bool archived = (record.attributes & HandheldRecord::archived) != 0;
        const auto attributes =
            (record.attributes & fileAttributes) | (archived ? HandheldRecord::deleted : 0);
        return static_cast<std::uint8_t>(attributes | record.category);
    }

    std::size_t appInfoPlace() const {
        return headerBytes + entryBytes * database_.records().size() + database_.fileRemains().gap.size();
    }
    std::size_t sortInfoPlace() const {
        return appInfoPlace() + (database_.appInfo() ? database_.appInfo()->size() : 0);
    }
    std::size_t recordPlace() const {
        return sortInfoPlace() + (database_.sortInfo() ? database_.sortInfo()->size() : 0);
    }

    void writeHeader() {
        const DatabaseHeader& header = database_.header();
        file_.assign(header.name.begin(), header.name.end());
        append(file_, database_.fileRemains().behindName);
        file_.resize(nameBytes);
        append16(file_, header.attributes);
        append16(file_, header.version);
        append32(file_, header.creationTime);
        append32(file_, header.modificationTime);
        append32(file_, header.backupTime);
        append32(file_, header.modificationNumber);
        append32(file_, database_.appInfo() ? appInfoPlace() : 0);
        append32(file_, database_.sortInfo() ? sortInfoPlace() : 0);
        append32(file_, header.type);
        append32(file_, header.creator);
        append32(file_, header.uniqueIdSeed);
        append32(file_, database_.fileRemains().nextRecordList);
        append16(file_, database_.records().size());
    }

    void writeList() {
        std::size_t place = recordPlace();
        database_.records().forEach([&](const HandheldRecord& record) {
            append32(file_, place);
            append32(file_, std::uint32_t{attributesInFile(record)} << 24 | record.id);
            place += dataInFile(record).size();
        });
    }

    const HandheldDatabase& database_;
    Bytes file_;
};

} // namespace

bool isResourceFile(const std::vector<std::uint8_t>& file) {
    return file.size() >= headerBytes && (read16(file, 32) & DatabaseHeader::resource) != 0;
}

HandheldDatabase parsePdb(const std::vector<std::uint8_t>& file) { return PdbReader(file).read(); }

std::vector<std::uint8_t> toPdb(const HandheldDatabase& database) { return PdbWriter(database).write(); }

} // namespace tsr
