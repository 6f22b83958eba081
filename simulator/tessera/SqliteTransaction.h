#pragma once

#include "tessera/SqliteDatabase.h"

namespace tsr {

// Everything between construction and `commit` happens, or none of it does. One may stand within another,
// which then decides for both.
class SqliteTransaction {
public:
    explicit SqliteTransaction(SqliteDatabase& database);
    ~SqliteTransaction();
    SqliteTransaction(const SqliteTransaction&) = delete;
    SqliteTransaction& operator=(const SqliteTransaction&) = delete;

    void commit();

private:
    SqliteDatabase& database_;
    bool isOutermost_;
    bool open_ = true;
};

} // namespace tsr
