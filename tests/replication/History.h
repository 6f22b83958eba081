#pragma once

#include <map>
#include <set>

#include "replication/Replica.h"

namespace tsr::test {

// How a HotSync comes to replicate an application.
enum class Course { Normal, Slow, Fast, Reset, Clear };

// Random edits of one application's items on both sides, HotSync by HotSync, and what has to hold behind
// each.
//
// Both sides hold the same items: as many of each line, each in its category by name. Items that the device
// has archived are in Notes alone.
//
// Where the device looks for an empty category: an item without a category goes to Notes with an empty name.
// When it comes back, after a reset or with a new text, that name finds the first free slot of the device's
// table, and a name that the table gets later takes the same slot: the item shows it on the device from then
// on, while Notes hears nothing of it until the item is changed. So an item whose name is empty in Notes may
// be in category 0, in a slot without a name, or in one that had none when the item came to it and that it
// hasn't left since.
class History {
public:
    History(ItemReplica& replica, char conflictRule);

    ItemReplica& replica() { return replica_; }

    void edit(RandomWords& random);

    // Before a HotSync, which asks for a slow one of all applications or lets the user's choice decide.
    void prepare(Course course, bool slow);

    // Behind it. A reset and a clear need another one, before both sides agree.
    void expectFirstOutcome();
    bool needsAnother() const { return course_ == Course::Reset || course_ == Course::Clear; }
    void expectAgreement();

    // Another HotSync moves nothing.
    void rememberAll();
    void expectNothingMoved();

private:
    using Slots = std::set<std::pair<std::uint32_t, std::uint8_t>>; // record id and category

    void editDevice(RandomWords& random);
    void addRecord(RandomWords& random);
    void editRecord(RandomWords& random, const HandheldRecord& record);
    void archiveRecord(const HandheldRecord& record);
    void nameCategory(RandomWords& random);
    std::uint8_t namedSlot(RandomWords& random);
    void editNotes(RandomWords& random);

    void expectOutcomeOfReset();
    void takeOutcomeOfClear();
    void expectSameItems(bool deviceMayHaveMore);
    bool isArchived(const Strings& lines) const;
    bool comesBack(const Document& document, const std::multimap<std::string, HandheldRecord>& left);
    bool isOnDevice(const Document& document, std::multimap<std::string, HandheldRecord>& left);
    bool isInCategory(const HandheldRecord& record, const std::string& name);
    void expectNothingNewIsLost();
    void expectWhatIsInNotesAlone();
    void forgetSlots();
    void noteSlots();
    void noteFreeSlots();

    ItemReplica& replica_;
    const ItemKind& kind_;
    char rule_;
    Course course_ = Course::Normal;
    Strings versionsBefore_;
    std::vector<Document> documentsBefore_;

    // What the edits since the last HotSync have brought that it must not lose.
    std::map<std::uint32_t, std::string> added_; // on the device: from record id to line
    std::set<std::string> newlyArchived_;        // on the device
    std::map<std::string, std::string> written_; // in Notes: from UNID to line

    std::set<std::string> archived_;   // lines of what only Notes has
    Slots withoutName_;                // records that came to their slot when it had no name
    std::set<std::uint8_t> freeSlots_; // that had no name after the last clean HotSync
    std::vector<HandheldRecord> recordsRemembered_;
    std::vector<std::uint8_t> appInfoRemembered_;
};

} // namespace tsr::test
