#pragma once

#include "replication/ItemKind.h"

namespace tsr::test {

// Tasks: "[x] 2 Buy milk | note, due 2002-02-06, private". A priority other than 1 to 3 is "-": all of them
// are 99 in Notes, and 5 when they come from there.
class TaskItems : public ItemKind {
public:
    const KnownApplication& application() const override { return *findApplication("todo"); }
    const char* title() const override { return "ToDo"; }
    const char* databaseKind() const override;
    const char* documentKind() const override;

    std::string line(const HandheldRecord& record) const override;
    Strings lines(const Properties& document) const override;
    bool copiesConflicts() const override { return true; }

    HandheldRecord randomRecord(RandomWords& random) const override;

    // The secret attribute never changes alone. The conduit compares records by the CRC of their bytes, which
    // the attribute is none of: nothing would be sent, and what is to be said about it is in
    // ToDoReplication.APrivateFlagAloneIsNotSeen.
    HandheldRecord edited(RandomWords& random, const HandheldRecord& record) const override;
    void rewrite(RandomWords& random, Properties& document) const override;
    void touch(RandomWords& random, Properties& document) const override;
};

} // namespace tsr::test
