#pragma once

#include "replication/ItemKind.h"

namespace tsr::test {

// Memos as Notes has them: "subject | body".
class MemoItems : public ItemKind {
public:
    const KnownApplication& application() const override { return *findApplication("memo"); }
    const char* title() const override { return "Memo Pad"; }
    const char* databaseKind() const override;
    const char* documentKind() const override;

    std::string line(const HandheldRecord& record) const override;
    Strings lines(const Properties& document) const override;
    bool mayRepeat(const std::string& line) const override; // a memo without words

    HandheldRecord randomRecord(RandomWords& random) const override;
    HandheldRecord edited(RandomWords& random, const HandheldRecord& record) const override;
    void rewrite(RandomWords& random, Properties& document) const override;
    void touch(RandomWords& random, Properties& document) const override;
};

} // namespace tsr::test
