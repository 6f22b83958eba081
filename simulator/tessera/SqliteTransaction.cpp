#include "tessera/SqliteTransaction.h"

#include "tessera/TesseraError.h"

namespace tsr {

SqliteTransaction::SqliteTransaction(SqliteDatabase& database)
    : database_(database), isOutermost_(!database.isInTransaction()) {
    database_.execute(isOutermost_ ? "BEGIN IMMEDIATE" : "SAVEPOINT inner");
}

SqliteTransaction::~SqliteTransaction() {
    if (!open_) return;
    try {
        database_.execute(isOutermost_ ? "ROLLBACK" : "ROLLBACK TO inner; RELEASE inner");
    } catch (const TesseraError&) { // SQLite has rolled back by itself
    }
}

void SqliteTransaction::commit() {
    database_.execute(isOutermost_ ? "COMMIT" : "RELEASE inner");
    open_ = false;
}

} // namespace tsr
