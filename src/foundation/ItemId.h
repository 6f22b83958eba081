#pragma once

#include <compare>
#include <string>

#include "foundation/Dbid.h"
#include "foundation/Unid.h"

namespace tsr {

// The identity of a Notes item: its database, and the document in it.
class ItemId {
public:
    ItemId() = default;
    ItemId(const std::string& dbidText, const std::string& unidText) : dbid_(dbidText), unid_(unidText) {}
    ItemId(const Dbid& dbid, const Unid& unid) : dbid_(dbid), unid_(unid) {}

    const Dbid& dbid() const { return dbid_; }
    const Unid& unid() const { return unid_; }
    std::string dbidText() const { return dbid_.text(); }
    std::string unidText() const { return unid_.text(); }

    auto operator<=>(const ItemId&) const = default;

private:
    Dbid dbid_;
    Unid unid_;
};

} // namespace tsr
