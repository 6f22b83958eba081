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

SqliteDatabase::~SqliteDatabase() {
    for (const auto& [sql, statement] : idleStatements_) sqlite3_finalize(statement);
    sqlite3_close(connection_);
}

void SqliteDatabase::execute(const std::string& sql) {
    if (sqlite3_exec(connection_, sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
        raiseFailure();
    }
}

std::int64_t SqliteDatabase::lastRowId() const { return sqlite3_last_insert_rowid(connection_); }

std::int64_t SqliteDatabase::changedRows() const { return sqlite3_changes(connection_); }

bool SqliteDatabase::isInTransaction() const { return sqlite3_get_autocommit(connection_) == 0; }

sqlite3_stmt* SqliteDatabase::takeStatement(const std::string& sql) {
    const auto found = idleStatements_.find(sql);
    if (found != idleStatements_.end()) return idleStatements_.extract(found).mapped();
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(connection_, sql.c_str(), -1, &statement, nullptr) != SQLITE_OK) raiseFailure();
    return statement;
}

void SqliteDatabase::returnStatement(sqlite3_stmt* statement) noexcept {
    sqlite3_reset(statement);
    sqlite3_clear_bindings(statement);
    try {
        idleStatements_.emplace(sqlite3_sql(statement), statement);
    } catch (...) { // no memory to keep it
        sqlite3_finalize(statement);
    }
}

void SqliteDatabase::raiseFailure() const {
    throw TesseraError(std::string("the store failed: ") + sqlite3_errmsg(connection_));
}

} // namespace tsr
