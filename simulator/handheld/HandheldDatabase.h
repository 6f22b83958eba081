#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "handheld/RecordList.h"

namespace tsr {

// What the handheld keeps about a database beside its records. Times are seconds since 1904.
struct DatabaseHeader {
    static constexpr std::uint16_t resource = 0x0001; // attribute: holds resources, no records
    static constexpr std::uint16_t readOnly = 0x0002; // attribute

    std::string name; // 1 to 31 bytes
    std::uint16_t attributes = 0;
    std::uint16_t version = 0;
    std::uint32_t creationTime = 0;
    std::uint32_t modificationTime = 0;
    std::uint32_t backupTime = 0;
    std::uint32_t modificationNumber = 0; // rises with every change
    std::uint32_t type = 0;
    std::uint32_t creator = 0;
    std::uint32_t uniqueIdSeed = 0; // the last id given away

    bool operator==(const DatabaseHeader&) const = default;
};

// Bytes of a file that mean nothing to us and go back as they came.
struct FileRemains {
    std::vector<std::uint8_t> behindName; // from the NUL of the name to the end of its 32 bytes
    std::uint32_t nextRecordList = 0;
    std::vector<std::uint8_t> gap = {0, 0}; // between the list of records and what follows it

    bool operator==(const FileRemains&) const = default;
};

// One record database of the handheld.
class HandheldDatabase {
public:
    static constexpr std::size_t maxRecords = 65535;
    static constexpr std::size_t maxNameBytes = 31;

    explicit HandheldDatabase(DatabaseHeader header) : header_(std::move(header)) {}

    const DatabaseHeader& header() const { return header_; }
    void setHeader(DatabaseHeader header) { header_ = std::move(header); } // of the same name
    const std::string& name() const { return header_.name; }
    const RecordList& records() const { return records_; }

    // As the user's fingers do it: the record is dirty afterwards. All but the first answer false when there
    // is no such record, or when it has been deleted or archived.
    std::uint32_t addRecord(std::vector<std::uint8_t> data, std::uint8_t category = 0,
                            std::uint8_t attributes = 0); // gives the id, 0 when the database is full
    bool editRecord(std::uint32_t id, std::vector<std::uint8_t> data);
    bool moveRecord(std::uint32_t id, std::uint8_t category);
    bool markSecret(std::uint32_t id, bool secret);
    bool deleteRecord(std::uint32_t id); // leaves a record without data, for the desktop to see
    bool archiveRecord(std::uint32_t id);

    // As the desktop does it: the record is clean afterwards. `id` 0 asks for a fresh one, an unknown id
    // becomes that of a new record, and a deleted record comes to life. Gives the id, 0 when the database is
    // full.
    std::uint32_t writeRecord(std::uint32_t id, std::uint8_t category, bool secret,
                              std::vector<std::uint8_t> data);
    bool eraseRecord(std::uint32_t id); // without a trace; false when there is no such record
    void purgeDeletedRecords();         // erases what is deleted or archived
    void resetSyncFlags();

    // Overwrites bytes inside a record and leaves its attributes alone; false unless all of them lie inside.
    bool patchRecord(std::uint32_t id, std::size_t offset, const std::vector<std::uint8_t>& bytes);

    // Puts a record in as it is, behind the others. False when its id is taken or the database is full.
    bool putRecord(HandheldRecord record);

    const std::optional<std::vector<std::uint8_t>>& appInfo() const { return appInfo_; }
    void setAppInfo(std::vector<std::uint8_t> block); // an empty one takes the block away
    const std::optional<std::vector<std::uint8_t>>& sortInfo() const { return sortInfo_; }
    void setSortInfo(std::vector<std::uint8_t> block);

    const FileRemains& fileRemains() const { return fileRemains_; }
    void setFileRemains(FileRemains remains) { fileRemains_ = std::move(remains); }

    // Whether there is something that the file does not hold yet.
    bool isUnsaved() const { return unsaved_; }
    void markSaved() { unsaved_ = false; }
    void markUnsaved() { unsaved_ = true; }

    // By content: header, blocks and records in index order.
    bool operator==(const HandheldDatabase& other) const;

private:
    std::uint32_t freshId();
    HandheldRecord* findLive(std::uint32_t id);
    void noteChange();

    DatabaseHeader header_;
    std::optional<std::vector<std::uint8_t>> appInfo_;
    std::optional<std::vector<std::uint8_t>> sortInfo_;
    FileRemains fileRemains_;
    RecordList records_;
    std::uint32_t highestId_ = 0;
    bool unsaved_ = true;
};

} // namespace tsr
