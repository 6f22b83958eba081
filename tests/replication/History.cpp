#include "replication/History.h"

#include <algorithm>

#include "handheld/CategoryTable.h"

#include "gmock/gmock.h"

namespace tsr::test {

namespace {

NextReplication typeOf(Course course) {
    switch (course) {
    case Course::Slow: return NextReplication::Slow;
    case Course::Fast: return NextReplication::Fast;
    case Course::Reset: return NextReplication::Reset;
    case Course::Clear: return NextReplication::Clear;
    default: return NextReplication::Normal;
    }
}

} // namespace

History::History(ItemReplica& replica, char conflictRule)
    : replica_(replica), kind_(replica.kind()), rule_(conflictRule) {
    noteFreeSlots();
}

void History::edit(RandomWords& random) {
    added_.clear();
    newlyArchived_.clear();
    written_.clear();
    for (std::uint32_t left = random.below(5); left > 0; --left) editDevice(random);
    for (std::uint32_t left = random.below(4); left > 0; --left) editNotes(random);
}

void History::prepare(Course course, bool slow) {
    course_ = course;
    replica_.configure(typeOf(course), rule_);
    versionsBefore_ = replica_.versionsInNotes();
    documentsBefore_ = replica_.documents();
    // Slow sessions take a record that has gone for a deleted one, and Notes loses its archived items.
    if (slow || course == Course::Slow) archived_.clear();
}

void History::expectFirstOutcome() {
    if (course_ == Course::Clear) {
        takeOutcomeOfClear();
    } else {
        replica_.expectCleanLog();
        if (course_ == Course::Reset) expectOutcomeOfReset();
    }
}

void History::expectAgreement() {
    replica_.expectCleanLog();
    archived_.insert(newlyArchived_.begin(), newlyArchived_.end());
    expectSameItems(false);
    expectNothingNewIsLost();
    expectWhatIsInNotesAlone();
    noteSlots();
}

void History::rememberAll() {
    recordsRemembered_ = replica_.database().records().all();
    appInfoRemembered_ = *replica_.database().appInfo();
    versionsBefore_ = replica_.versionsInNotes();
}

void History::expectNothingMoved() {
    replica_.expectCleanLog();
    EXPECT_EQ(replica_.database().records().all(), recordsRemembered_);
    EXPECT_EQ(*replica_.database().appInfo(), appInfoRemembered_);
    EXPECT_EQ(replica_.versionsInNotes(), versionsBefore_);
}

void History::editDevice(RandomWords& random) {
    std::vector<HandheldRecord> live;
    for (const HandheldRecord& record : replica_.database().records().all()) {
        if (!record.isGone()) live.push_back(record);
    }
    const std::uint32_t what = live.empty() ? 0 : random.below(9);
    if (what <= 2) return addRecord(random);
    const HandheldRecord& record = live[random.below(static_cast<std::uint32_t>(live.size()))];
    switch (what) {
    case 3:
    case 4: editRecord(random, record); return;
    case 5: replica_.database().moveRecord(record.id, namedSlot(random)); return;
    case 6:
        replica_.database().deleteRecord(record.id);
        added_.erase(record.id);
        return;
    case 7: archiveRecord(record); return;
    default: nameCategory(random);
    }
}

void History::addRecord(RandomWords& random) {
    const HandheldRecord record = kind_.randomRecord(random);
    const std::uint8_t slot = namedSlot(random);
    added_[replica_.database().addRecord(record.data, slot, record.attributes)] = kind_.line(record);
}

void History::editRecord(RandomWords& random, const HandheldRecord& record) {
    const HandheldRecord edited = kind_.edited(random, record);
    replica_.database().editRecord(record.id, edited.data);
    replica_.database().markSecret(record.id, (edited.attributes & HandheldRecord::secret) != 0);
    if (added_.contains(record.id)) added_[record.id] = kind_.line(edited);
}

// A copy without words could not be told from others.
void History::archiveRecord(const HandheldRecord& record) {
    const std::string line = kind_.line(record);
    if (kind_.mayRepeat(line)) return;
    replica_.database().archiveRecord(record.id);
    newlyArchived_.insert(line);
    added_.erase(record.id);
}

// The user names the first free category.
void History::nameCategory(RandomWords& random) {
    static constexpr const char* names[] = {"Attic", "Boat"};
    const std::string name = names[random.below(2)];
    CategoryTable table(replica_.database());
    std::uint8_t slot = 0;
    for (; !table.name(slot).empty(); ++slot) {
        if (table.name(slot) == name) return;
    }
    table.rename(slot, name);
}

// One that the user can choose: none, or a category with a name.
std::uint8_t History::namedSlot(RandomWords& random) {
    const CategoryTable table(replica_.database());
    std::uint8_t named = 0;
    while (!table.name(named).empty()) ++named;
    return static_cast<std::uint8_t>(random.flag() ? 0 : random.below(named));
}

void History::editNotes(RandomWords& random) {
    const std::vector<Document> documents = replica_.documents();
    const std::uint32_t what = documents.empty() ? 0 : random.below(5);
    if (what <= 1) {
        Properties properties;
        kind_.rewrite(random, properties);
        written_[replica_.addToNotes(properties)] = kind_.lines(properties)[0];
        return;
    }
    Document document = documents[random.below(static_cast<std::uint32_t>(documents.size()))];
    if (what == 4) {
        replica_.removeFromNotes(document);
        written_.erase(document.unid);
        return;
    }
    if (what == 2) {
        kind_.rewrite(random, document.properties);
    } else {
        kind_.touch(random, document.properties);
    }
    replica_.replaceInNotes(document);
    if (written_.contains(document.unid)) written_[document.unid] = kind_.lines(document.properties)[0];
}

// What wasn't sent before a reset is lost, but for new records: these stay, and a slow session finds them.
void History::expectOutcomeOfReset() {
    EXPECT_EQ(replica_.versionsInNotes(), versionsBefore_);
    archived_.clear(); // all comes back, even what was archived
    newlyArchived_.clear();
    expectSameItems(true);
    noteSlots();
    replica_.configure(NextReplication::Slow, rule_);
}

// The device starts anew, without a category table until its application is started; what needs one comes
// with the next HotSync.
void History::takeOutcomeOfClear() {
    EXPECT_EQ(replica_.versionsInNotes(), versionsBefore_);
    archived_.clear();
    newlyArchived_.clear();
    added_.clear();
    replica_.startApplication();
    forgetSlots();
}

void History::expectSameItems(bool deviceMayHaveMore) {
    std::multimap<std::string, HandheldRecord> left;
    for (const HandheldRecord& record : replica_.database().records().all())
        left.emplace(kind_.line(record), record);
    std::set<std::string> seen;
    for (const Document& document : replica_.documents()) {
        const Strings lines = kind_.lines(document.properties);
        EXPECT_TRUE(seen.insert(lines[0]).second || kind_.mayRepeat(lines[0]))
            << lines[0] << " is there twice";
        if (isArchived(lines) && !comesBack(document, left)) continue;
        if (isOnDevice(document, left)) continue;
        ADD_FAILURE() << lines[0] << " in '" << ItemReplica::deviceCategory(document.properties)
                      << "' isn't on the device";
    }
    if (deviceMayHaveMore) return;
    for (const auto& [line, record] : left) ADD_FAILURE() << line << " isn't in Notes";
}

bool History::isArchived(const Strings& lines) const {
    return std::any_of(lines.begin(), lines.end(),
                       [this](const std::string& line) { return archived_.contains(line); });
}

// The copy that a conflict ends with is given to the handheld, also when it is of an item that the handheld
// has archived, for nothing tells the server of that. From then on it is an item as any other.
bool History::comesBack(const Document& document, const std::multimap<std::string, HandheldRecord>& left) {
    if (rule_ != 'S' || !kind_.copiesConflicts()) return false;
    const Strings lines = kind_.lines(document.properties);
    if (!left.contains(lines[0])) return false;
    archived_.erase(lines[0]);
    return true;
}

// Takes the record out of `left`.
bool History::isOnDevice(const Document& document, std::multimap<std::string, HandheldRecord>& left) {
    const std::string category = ItemReplica::deviceCategory(document.properties);
    for (const std::string& line : kind_.lines(document.properties)) {
        const auto [begin, end] = left.equal_range(line);
        const auto match = std::find_if(
            begin, end, [&](const auto& candidate) { return isInCategory(candidate.second, category); });
        if (match == end) continue;
        left.erase(match);
        return true;
    }
    return false;
}

bool History::isInCategory(const HandheldRecord& record, const std::string& name) {
    if (record.category == 0) return name.empty();
    if (replica_.categoryName(record.category) == name) return true;
    if (!name.empty() || !kind_.looksForEmptyCategory()) return false;
    const std::pair<std::uint32_t, std::uint8_t> slot{record.id, record.category};
    if (freeSlots_.contains(record.category)) withoutName_.insert(slot);
    return withoutName_.contains(slot);
}

void History::expectNothingNewIsLost() {
    std::set<std::string> inNotes;
    for (const Document& document : replica_.documents()) {
        for (const std::string& line : kind_.lines(document.properties)) inNotes.insert(line);
    }
    for (const auto& [id, line] : added_) EXPECT_TRUE(inNotes.contains(line)) << line;
    for (const auto& [unid, line] : written_) EXPECT_TRUE(inNotes.contains(line)) << line;
}

void History::expectWhatIsInNotesAlone() {
    const std::vector<Document> documents = replica_.documents();
    for (const Document& before : documentsBefore_) {
        for (const Document& after : documents) {
            if (after.unid != before.unid) continue;
            EXPECT_TRUE(kind_.keepsWhatIsInNotesAlone(before.properties, after.properties))
                << kind_.lines(after.properties)[0];
        }
    }
}

void History::forgetSlots() {
    withoutName_.clear();
    noteFreeSlots();
}

// Behind a clean HotSync.
void History::noteSlots() {
    Slots still;
    for (const HandheldRecord& record : replica_.database().records().all()) {
        const std::pair<std::uint32_t, std::uint8_t> slot{record.id, record.category};
        if (record.category == 0) continue;
        if (replica_.categoryName(record.category).empty() || withoutName_.contains(slot)) still.insert(slot);
    }
    withoutName_.swap(still);
    noteFreeSlots();
}

void History::noteFreeSlots() {
    freeSlots_.clear();
    for (std::uint8_t slot = 0; slot < HandheldRecord::categories; ++slot) {
        if (replica_.categoryName(slot).empty()) freeSlots_.insert(slot);
    }
}

} // namespace tsr::test
