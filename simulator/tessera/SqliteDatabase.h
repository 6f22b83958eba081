#pragma once

#include <cstdint>
#include <string>

#include "tessera/SqliteStatement.h"

struct sqlite3;

namespace tsr {

// A connection to one SQLite file. Failures raise TesseraError.
class SqliteDatabase {
public:
    explicit SqliteDatabase(
        const std::string& file); // made when it isn't there; ":memory:" is one without a file
    ~SqliteDatabase();
    SqliteDatabase(const SqliteDatabase&) = delete;
    SqliteDatabase& operator=(const SqliteDatabase&) = delete;

    void execute(const std::string& sql); // one or more statements without parameters
    SqliteStatement statement(const std::string& sql) { return SqliteStatement(connection_, sql); }

    std::int64_t lastRowId() const;
    std::int64_t changedRows() const; // by the last statement
    bool isInTransaction() const;

private:
    sqlite3* connection_ = nullptr;
};

} // namespace tsr
