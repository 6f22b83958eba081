#pragma once

#include <string>
#include <vector>

#include "handheld/HandheldRecord.h"
#include "handheld/knownDatabases.h"
#include "replication/RandomWords.h"
#include "tessera/Document.h"

namespace tsr::test {

using Strings = std::vector<std::string>;

// Where one application's items are kept on both sides.
class ReplicatedKind {
public:
    ReplicatedKind() = default;
    ReplicatedKind(const ReplicatedKind&) = delete;
    ReplicatedKind& operator=(const ReplicatedKind&) = delete;
    virtual ~ReplicatedKind() = default;

    virtual const KnownApplication& application() const = 0;
    virtual const char* title() const = 0; // in the HotSync log
    virtual const char* databaseKind() const = 0;
    virtual const char* documentKind() const = 0;
};

// What the tests of whole HotSyncs know of an application whose items are one record each. A line shows an
// item without its category, and of an item that is the same on both sides they show the same; texts are
// UTF-8.
class ItemKind : public ReplicatedKind {
public:
    virtual std::string line(const HandheldRecord& record) const = 0;

    // The first line is what the handheld makes of the document when it is given it. There may be others that
    // a handheld shows which knows the document already.
    virtual Strings lines(const Properties& document) const = 0;

    // Whether several items may show this line. Any other is shown by one at most, in the whole of a history.
    virtual bool mayRepeat(const std::string&) const { return false; }

    // Whether a document's empty category makes the handheld look for a category without a name.
    virtual bool looksForEmptyCategory() const { return true; }

    // Whether a conflict under Notes' rule ends with a copy that the handheld receives as a new item, and not
    // with an anomaly, to which its record moves.
    virtual bool copiesConflicts() const { return false; }

    // Whether a HotSync has left in `after` what the handheld didn't have of the document `before`.
    virtual bool keepsWhatIsInNotesAlone(const Properties&, const Properties&) const { return true; }

    // Edits of the user. Records have data and the secret attribute.
    virtual HandheldRecord randomRecord(RandomWords& random) const = 0;
    virtual HandheldRecord edited(RandomWords& random, const HandheldRecord& record) const = 0;
    virtual void rewrite(RandomWords& random, Properties& document) const = 0; // of a new one, too
    virtual void touch(RandomWords& random, Properties& document) const = 0;   // leaves its categories
};

} // namespace tsr::test
