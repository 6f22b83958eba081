#include "tessera/SqliteStatement.h"

#include <sqlite3.h>

#include "tessera/SqliteDatabase.h"

namespace tsr {

SqliteStatement::SqliteStatement(SqliteDatabase& database, const std::string& sql)
    : database_(database), statement_(database.takeStatement(sql)) {}

SqliteStatement::~SqliteStatement() { database_.returnStatement(statement_); }

SqliteStatement& SqliteStatement::bind(std::int64_t value) {
    check(sqlite3_bind_int64(statement_, ++bound_, value));
    return *this;
}

SqliteStatement& SqliteStatement::bind(const std::string& value) {
    check(
        sqlite3_bind_text64(statement_, ++bound_, value.data(), value.size(), SQLITE_TRANSIENT, SQLITE_UTF8));
    return *this;
}

bool SqliteStatement::step() {
    const int result = sqlite3_step(statement_);
    if (result == SQLITE_ROW) return true;
    if (result != SQLITE_DONE) check(result);
    return false;
}

void SqliteStatement::run() {
    while (step()) {
    }
}

std::int64_t SqliteStatement::integer(int column) const { return sqlite3_column_int64(statement_, column); }

std::string SqliteStatement::text(int column) const {
    const unsigned char* data = sqlite3_column_text(statement_, column);
    if (data == nullptr) return {};
    const auto size = static_cast<std::size_t>(sqlite3_column_bytes(statement_, column));
    return {reinterpret_cast<const char*>(data), size};
}

void SqliteStatement::check(int result) const {
    if (result != SQLITE_OK) database_.raiseFailure();
}

} // namespace tsr
