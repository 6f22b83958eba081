#pragma once

#include <cstdint>
#include <string>

struct sqlite3_stmt;

namespace tsr {

class SqliteDatabase;

// One prepared statement. Parameters are bound in order, columns are numbered from 0. Failures raise
// TesseraError.
class SqliteStatement {
public:
    SqliteStatement(SqliteDatabase& database, const std::string& sql); // keeps the reference
    ~SqliteStatement();
    SqliteStatement(const SqliteStatement&) = delete;
    SqliteStatement& operator=(const SqliteStatement&) = delete;

    SqliteStatement& bind(std::int64_t value);
    SqliteStatement& bind(const std::string& value);

    bool step(); // true when there is a row
    void run();  // to the end, rows unseen

    std::int64_t integer(int column) const;
    std::string text(int column) const;

private:
    void check(int result) const;

    SqliteDatabase& database_;
    sqlite3_stmt* statement_;
    int bound_ = 0;
};

} // namespace tsr
