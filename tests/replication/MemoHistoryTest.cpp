// Random edits on both sides over many HotSyncs of every type.

#include <map>
#include <random>
#include <set>

#include "handheld/CategoryTable.h"
#include "replication/MemoReplicationTest.h"

namespace tsr {
namespace {

using test::Strings;

// A memo as Notes has it, without its categories: "subject | body". Every text but the empty one is written
// once in a history.
std::string keyOf(const std::vector<std::uint8_t>& memoBytes) {
    PalmMemoRecord memo;
    memo.setText(reinterpret_cast<const char*>(memoBytes.data()));
    NotesJournalRecord journal;
    setJournalText(journal, memo);
    return journal.subject + " | " + journal.body;
}

std::string keyOf(const Document& document) {
    return firstValue(document.properties, "Subject") + " | " + firstValue(document.properties, "Body");
}

const std::string emptyMemo = "Untitled | ";

// What a round of edits has brought that a HotSync must not lose.
struct News {
    std::map<std::uint32_t, std::string> added; // on the device: from record id to key
    std::set<std::string> archived;             // on the device
    std::map<std::string, std::string> written; // in Notes: from UNID to key
};

// The edits of one history. A seed always makes the same.
class Editor {
public:
    Editor(std::uint32_t seed, Handheld& handheld, test::Office& office)
        : random_(seed), handheld_(handheld), office_(office) {}

    std::uint32_t pick(std::uint32_t limit) { return static_cast<std::uint32_t>(random_() % limit); }

    News editBothSides() {
        News news;
        for (std::uint32_t left = pick(5); left > 0; --left) editDevice(news);
        for (std::uint32_t left = pick(4); left > 0; --left) editNotes(news);
        return news;
    }

private:
    HandheldDatabase& database() { return *handheld_.find("MemoDB"); }

    void editDevice(News& news) {
        std::vector<HandheldRecord> live;
        for (const HandheldRecord& record : database().records().all()) {
            if (!record.isGone()) live.push_back(record);
        }
        const std::uint32_t what = live.empty() ? 0 : pick(9);
        if (what <= 2) {
            const std::vector<std::uint8_t> text = memoText();
            news.added[database().addRecord(text, namedSlot())] = keyOf(text);
            return;
        }
        const HandheldRecord& record = live[pick(static_cast<std::uint32_t>(live.size()))];
        switch (what) {
        case 3:
        case 4: {
            const std::vector<std::uint8_t> text = memoText();
            database().editRecord(record.id, text);
            if (news.added.count(record.id) != 0) news.added[record.id] = keyOf(text);
            return;
        }
        case 5: database().moveRecord(record.id, namedSlot()); return;
        case 6:
            database().deleteRecord(record.id);
            news.added.erase(record.id);
            return;
        case 7: archive(record, news); return;
        default: nameCategory();
        }
    }

    // A copy without words could not be told from others.
    void archive(const HandheldRecord& record, News& news) {
        if (keyOf(record.data) == emptyMemo) return;
        database().archiveRecord(record.id);
        news.archived.insert(keyOf(record.data));
        news.added.erase(record.id);
    }

    // The user names the first free category.
    void nameCategory() {
        static constexpr const char* names[] = {"Attic", "Boat"};
        const std::string name = names[pick(2)];
        CategoryTable table(database());
        std::uint8_t slot = 0;
        for (; !table.name(slot).empty(); ++slot) {
            if (table.name(slot) == name) return;
        }
        table.rename(slot, name);
    }

    // One that the user can choose: none, or a category with a name.
    std::uint8_t namedSlot() {
        const CategoryTable table(database());
        std::uint8_t named = 0;
        while (!table.name(named).empty()) ++named;
        return static_cast<std::uint8_t>(pick(2) == 0 ? 0 : pick(named));
    }

    void editNotes(News& news) {
        const std::vector<Document> documents = office_.documents();
        const std::uint32_t what = documents.empty() ? 0 : pick(5);
        if (what <= 1) {
            const Memo memo{word(), body(), categories()};
            news.written[office_.add(memo)] = memo.subject + " | " + memo.body;
            return;
        }
        Document document = documents[pick(static_cast<std::uint32_t>(documents.size()))];
        if (what == 4) {
            office_.remove(document);
            news.written.erase(document.unid);
            return;
        }
        if (what == 2) {
            setMemo(document.properties, Memo{word(), body(), categories()});
        } else {
            document.properties["Body"] = {body()}; // and the categories stay, an empty name too
        }
        office_.replace(document);
        if (news.written.count(document.unid) != 0) news.written[document.unid] = keyOf(document);
    }

    std::string word() {
        static constexpr const char* words[] = {"Milk", "Bread", "Lunch at noon", "a=b", "Report", "x"};
        return words[pick(6)];
    }

    std::string serial() { return '#' + std::to_string(++serial_); }

    std::string body() { return word() + '\n' + word() + serial(); }

    std::vector<std::uint8_t> memoText() {
        const std::string text = [this]() -> std::string {
            switch (pick(6)) {
            case 0: return "";
            case 1: return word() + serial();
            case 2: return "Subject: " + word() + '\n' + word() + serial();
            case 3: return "\n\n" + word() + serial();
            default: return word() + '\n' + word() + serial() + '\n';
            }
        }();
        return {text.c_str(), text.c_str() + text.size() + 1};
    }

    // None of the names is the device's word for no category.
    Strings categories() {
        static constexpr const char* names[] = {"Business", "Garden", "Home", "Attic",
                                                "A name that is too long"};
        Strings result;
        for (std::uint32_t left = pick(3); left > 0; --left) result.emplace_back(names[pick(5)]);
        return result;
    }

    std::mt19937 random_;
    Handheld& handheld_;
    test::Office& office_;
    std::uint32_t serial_ = 0;
};

// Both sides hold the same memos: as many of each text, each in its category by name. Memos that the device
// has archived are in Notes alone.
//
// A memo without a category goes to Notes with an empty name. When it comes back, after a reset or with a new
// text, that name finds the first free slot of the device's table, and a name that the table gets later takes
// the same slot: the memo shows it on the device from then on, while Notes hears nothing of it until the memo
// is changed. So a memo whose name is empty in Notes may be in category 0, in a slot without a name, or in
// one that had none when the memo came to it and that it hasn't left since.
class MemoHistory : public test::MemoReplication {
protected:
    void begin(char conflictRule) {
        rule_ = conflictRule;
        startAfresh(conflictRule);
        archived_.clear();
        forgetSlots();
    }

    // Each ends with a clean HotSync, after which both sides are to agree.
    void hotSyncOf(std::uint32_t kind, News& news) {
        switch (kind) {
        case 0: forgetArchived(), sync(true); break;
        case 1: configure(NextReplication::Slow, rule_), forgetArchived(), sync(); break;
        case 2: configure(NextReplication::Fast, rule_), sync(); break;
        case 3: resetAndSlow(news); break;
        case 4: clear(news); break;
        default: sync();
        }
        archived_.insert(news.archived.begin(), news.archived.end());
    }

    void expectAgreement(const News& news) {
        expectSameMemos(false);
        const std::set<std::string> keys = keysInNotes();
        for (const auto& [id, key] : news.added) EXPECT_EQ(keys.count(key), 1U) << key;
        for (const auto& [unid, key] : news.written) EXPECT_EQ(keys.count(key), 1U) << key;
        noteSlots();
    }

    // A second HotSync moves nothing.
    void expectQuiet() {
        const HandheldDatabase before = database();
        const Strings versions = versionsInNotes();
        sync();
        EXPECT_EQ(database().records().all(), before.records().all());
        EXPECT_EQ(database().appInfo(), before.appInfo());
        EXPECT_EQ(versionsInNotes(), versions);
    }

private:
    using Slots = std::set<std::pair<std::uint32_t, std::uint8_t>>; // record id and category

    // Slow sessions take a record that has gone for a deleted one, and Notes loses its archived memos.
    void forgetArchived() { archived_.clear(); }

    void forgetSlots() {
        withoutName_.clear();
        noteFreeSlots();
    }

    // What wasn't sent before a reset is lost, but for new records: these stay, and a slow session finds
    // them.
    void resetAndSlow(News& news) {
        const Strings before = versionsInNotes();
        configure(NextReplication::Reset, rule_);
        sync();
        EXPECT_EQ(versionsInNotes(), before);
        forgetArchived(); // all comes back, even what was archived
        news.archived.clear();
        expectSameMemos(true);
        noteSlots();
        sync(true);
    }

    // The device starts anew, without a category table until its application is started; what needs one comes
    // with the next HotSync.
    void clear(News& news) {
        const Strings before = versionsInNotes();
        configure(NextReplication::Clear, rule_);
        hotSync();
        EXPECT_EQ(versionsInNotes(), before);
        forgetArchived();
        news.archived.clear();
        news.added.clear();
        Handheld fresh;
        addStandardDatabases(fresh);
        database().setAppInfo(*fresh.find("MemoDB")->appInfo());
        forgetSlots();
        sync();
    }

    void expectSameMemos(bool deviceMayHaveMore) {
        std::multimap<std::string, HandheldRecord> left;
        for (const HandheldRecord& record : database().records().all()) {
            left.emplace(keyOf(record.data), record);
        }
        std::set<std::string> seen;
        for (const Document& document : office->documents()) {
            const std::string key = keyOf(document);
            EXPECT_TRUE(seen.insert(key).second || key == emptyMemo) << key << " is there twice";
            if (archived_.count(key) != 0) continue;
            const std::string category = deviceCategory(toMemo(document).categories);
            const auto [begin, end] = left.equal_range(key);
            const auto match = std::find_if(
                begin, end, [&](const auto& candidate) { return isInCategory(candidate.second, category); });
            if (match == end) {
                ADD_FAILURE() << key << " in '" << category << "' isn't on the device";
            } else {
                left.erase(match);
            }
        }
        if (deviceMayHaveMore) return;
        for (const auto& [key, record] : left) ADD_FAILURE() << key << " isn't in Notes";
    }

    bool isInCategory(const HandheldRecord& record, const std::string& name) {
        if (record.category == 0) return name.empty();
        if (categoryName(record.category) == name) return true;
        if (!name.empty()) return false;
        const std::pair<std::uint32_t, std::uint8_t> slot{record.id, record.category};
        if (freeSlots_.count(record.category) != 0) withoutName_.insert(slot);
        return withoutName_.count(slot) != 0;
    }

    // Behind a clean HotSync.
    void noteSlots() {
        Slots still;
        for (const HandheldRecord& record : database().records().all()) {
            const std::pair<std::uint32_t, std::uint8_t> slot{record.id, record.category};
            if (record.category == 0) continue;
            if (categoryName(record.category).empty() || withoutName_.count(slot) != 0) still.insert(slot);
        }
        withoutName_.swap(still);
        noteFreeSlots();
    }

    void noteFreeSlots() {
        freeSlots_.clear();
        for (std::uint8_t slot = 0; slot < 16; ++slot) {
            if (categoryName(slot).empty()) freeSlots_.insert(slot);
        }
    }

    std::set<std::string> keysInNotes() {
        std::set<std::string> keys;
        for (const Document& document : office->documents()) keys.insert(keyOf(document));
        return keys;
    }

    char rule_ = 'C';
    std::set<std::string> archived_;   // keys of what only Notes has
    Slots withoutName_;                // records that came to their slot when it had no name
    std::set<std::uint8_t> freeSlots_; // that had no name after the last clean HotSync
};

TEST_F(MemoHistory, RandomEditsConverge) {
    for (std::uint32_t seed = 1; seed <= 500; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        begin(seed % 2 == 0 ? 'C' : 'S');
        Editor editor(seed, handheld, *office);
        for (int session = 0; session < 5; ++session) {
            SCOPED_TRACE("session " + std::to_string(session));
            News news = editor.editBothSides();
            hotSyncOf(editor.pick(10), news);
            expectAgreement(news);
            expectQuiet();
            if (HasFailure()) return;
        }
    }
}

} // namespace
} // namespace tsr
