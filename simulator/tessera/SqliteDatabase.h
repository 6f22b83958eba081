#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "tessera/SqliteStatement.h"

struct sqlite3;
struct sqlite3_stmt;

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
    SqliteStatement statement(const std::string& sql) { return SqliteStatement(*this, sql); }

    std::int64_t lastRowId() const;
    std::int64_t changedRows() const; // by the last statement
    bool isInTransaction() const;

    // For SqliteStatement: preparing takes longer than most statements run, and so each is kept for the next
    // one of the same text.
    sqlite3_stmt* takeStatement(const std::string& sql);
    void returnStatement(sqlite3_stmt* statement) noexcept;
    [[noreturn]] void raiseFailure() const;

private:
    sqlite3* connection_ = nullptr;
    std::multimap<std::string, sqlite3_stmt*> idleStatements_;
};

} // namespace tsr
