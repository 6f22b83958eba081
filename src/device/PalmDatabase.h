#pragma once

#include <cstdint>
#include <string>

#include "device/PalmRecordBuffer.h"
#include "foundation/CountedPtr.h"

namespace tsr {

// One open database of the handheld. Every Sync Manager result but the tolerated ones raises
// PalmSyncApiError, which names the call. The last holder's release closes the database, quietly.
class PalmDatabase {
public:
    // Opens a database that must exist.
    static CountedPtr<PalmDatabase> openByName(const std::string& name, std::int32_t card);

    // Opens the one database of this type and creator, or creates it as `name` on `card`; `flagged` marks the
    // conduit's own databases. Raises DuplicateDatabases when there are two: it never chooses between them.
    static CountedPtr<PalmDatabase> openOrCreate(std::uint32_t creator, std::uint32_t type,
                                                 const std::string& name, std::uint8_t card, bool flagged);

    static void deleteDatabase(const std::string& name, std::int32_t card);

    PalmDatabase(const PalmDatabase&) = delete;
    PalmDatabase& operator=(const PalmDatabase&) = delete;
    ~PalmDatabase();

    void setCloseOption(bool on) { closeOption_ = on; }
    void close();

    // Reads. By id a missing record raises too; elsewhere it gives false. The `Next` reads go on from the one
    // before on the same buffer.
    void readRecordById(PalmRecordBuffer& buffer, std::uint32_t id);
    bool readRecordByIndex(PalmRecordBuffer& buffer, std::uint16_t index);
    bool readFirstInCategory(PalmRecordBuffer& buffer, std::int16_t category);
    bool readNextInCategory(PalmRecordBuffer& buffer);
    bool readFirstModified(PalmRecordBuffer& buffer);
    bool readNextModified(PalmRecordBuffer& buffer);

    void writeRecord(PalmRecordBuffer& buffer);  // an id of 0 comes back as the one that the handheld gave
    void deleteRecord(PalmRecordBuffer& buffer); // by the buffer's id

    void purgeDeletedRecords();
    void resetSyncFlags();
    void resetRecordIndex();
    std::uint16_t recordCount();

    void readAppInfoBlock(PalmRecordBuffer& buffer); // appends to `buffer`
    void writeAppInfoBlock(const PalmRecordBuffer& buffer);

private:
    explicit PalmDatabase(std::uint8_t handle) : handle_(handle) {}

    using RecordCall = std::int32_t(TSR_PLATFORM_CALL*)(RawRecordInfo*);
    std::int32_t call(RecordCall function, PalmRecordBuffer& buffer);
    std::int32_t read(RecordCall function, PalmRecordBuffer& buffer);
    std::int32_t readWhole(RecordCall function, PalmRecordBuffer& buffer);
    bool readSequentially(RecordCall function, const char* name, PalmRecordBuffer& buffer);

    std::uint8_t handle_;
    bool closeOption_ = false;
    std::size_t walked_ = 0; // records since the last reset of the index
};

} // namespace tsr
