#pragma once

#include "replication/ItemKind.h"

namespace tsr::test {

// Contacts as the handheld shows them: "display=work lastName=Lee work=123", by name, with "/" between the
// lines of a text.
class ContactItems : public ItemKind {
public:
    const KnownApplication& application() const override { return *findApplication("address"); }
    const char* title() const override { return "Address"; }
    const char* databaseKind() const override;
    const char* documentKind() const override;

    std::string line(const HandheldRecord& record) const override;

    // The handheld has room for phones of five kinds. It keeps without a phone what it sends without, and so
    // frees a place for one that had none; that one comes when the document is given to it again, after a
    // change in Notes or a reset. Until then the handheld shows the second line, of the kinds that it listed.
    Strings lines(const Properties& document) const override;
    bool looksForEmptyCategory() const override { return false; }

    // Phones of kinds that the handheld didn't have stay as they are, unless it has come by one of that kind
    // itself: that one takes the place of what it never saw.
    bool keepsWhatIsInNotesAlone(const Properties& before, const Properties& after) const override;

    HandheldRecord randomRecord(RandomWords& random) const override;
    HandheldRecord edited(RandomWords& random, const HandheldRecord& record) const override;
    void rewrite(RandomWords& random, Properties& document) const override;
    void touch(RandomWords& random, Properties& document) const override;
};

} // namespace tsr::test
