#include "tessera/SqliteDatabase.h"

#include <sqlite3.h>

#include "tessera/TesseraError.h"

namespace tsr {

namespace {

// The command may change a file while a server serves it; one waits for the other this long.
constexpr int busyMilliseconds = 5000;

} // namespace

SqliteDatabase::SqliteDatabase(const std::string& file) {
    const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_FULLMUTEX;
    if (sqlite3_open_v2(file.c_str(), &connection_, flags, nullptr) != SQLITE_OK) {
        sqlite3_close(connection_);
        throw TesseraError("cannot open the store '" + file + "'");
    }
    sqlite3_busy_timeout(connection_, busyMilliseconds);
}

SqliteDatabase::~SqliteDatabase() { sqlite3_close(connection_); }

void SqliteDatabase::execute(const std::string& sql) {
    if (sqlite3_exec(connection_, sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
        throw TesseraError(std::string("the store failed: ") + sqlite3_errmsg(connection_));
    }
}

std::int64_t SqliteDatabase::lastRowId() const { return sqlite3_last_insert_rowid(connection_); }

std::int64_t SqliteDatabase::changedRows() const { return sqlite3_changes(connection_); }

bool SqliteDatabase::isInTransaction() const { return sqlite3_get_autocommit(connection_) == 0; }

} // namespace tsr
