// Memos between a handheld and a server, both with all that they are made of.

#include <memory>
#include <random>
#include <string>
#include <vector>

#include "conduit/openConduit.h"
#include "handheld/ConfigurationDatabase.h"
#include "handheld/standardDatabases.h"
#include "records/memoJournal.h"
#include "support/AttachedHandheldTest.h"
#include "support/testClock.h"
#include "tessera/Memo.h"
#include "tessera/Store.h"
#include "tessera/TcpServer.h"
#include "tessera/TesseraService.h"
#include "tessera/passwords.h"

#include "gmock/gmock.h"

namespace tsr {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using Strings = std::vector<std::string>;

constexpr std::uint32_t memoCreator = 0x6D656D6F;
constexpr std::uint8_t memoCategory = 7; // in the configuration
constexpr std::int64_t noon = 1012998896;

// A user's journal behind a server.
class Office {
public:
    Office() : service_(store_, [] { return noon; }) {
        User user;
        user.name = "Max";
        store_.addUser(user, hashPassword("pw", PasswordCost::Minimal));
        journal_ = store_.database(store_.findUser("Max")->id, journalKind).id;
        server_ = std::make_unique<TcpServer>(service_, "127.0.0.1", 0);
        server_->start();
    }

    std::string port() const { return std::to_string(server_->port()); }
    std::vector<Document> documents() { return store_.documents(journal_, memoKind); }
    std::string add(const Memo& memo) {
        return store_.addDocument(journal_, memoKind, toProperties(memo)).unid;
    }
    void change(const Document& document, const Memo& memo) {
        Properties properties = document.properties;
        setMemo(properties, memo);
        store_.changeDocument(journal_, document.unid, properties);
    }
    void remove(const Document& document) { store_.deleteDocument(journal_, document.unid); }

private:
    Store store_ = Store::inMemory();
    TesseraService service_;
    std::int64_t journal_ = 0;
    std::unique_ptr<TcpServer> server_;
};

class MemoReplication : public test::AttachedHandheldTest {
protected:
    MemoReplication() {
        test::setClock(noon);
        startAfresh();
    }

    // A new handheld that knows nothing, and an empty office for it.
    void startAfresh(char conflictRule = 'C') {
        office = std::make_unique<Office>();
        handheld = Handheld();
        handheld.clock = static_cast<std::uint32_t>(noon);
        addStandardDatabases(handheld);
        ConnectionChoice connection;
        connection.userName = "Max";
        connection.password = "pw";
        connection.serverAddress = "127.0.0.1";
        connection.serverPort = office->port();
        ConfigurationDatabase(handheld).setConnection(connection);
        configure(NextReplication::Normal, conflictRule);
    }

    void configure(NextReplication type, char conflictRule = 'C') {
        ApplicationChoice choice;
        choice.type = type;
        choice.conflictRule = conflictRule;
        ConfigurationDatabase(handheld).setApplication(memoCategory, choice);
    }

    // One HotSync, whatever comes of it.
    void hotSync(bool slow = false) {
        hotSyncLogClear();
        const auto properties = std::make_unique<SyncProperties>();
        properties->creator = memoCreator;
        properties->syncType = slow ? SyncProperties::slow : 0;
        ASSERT_EQ(openConduit(nullptr, properties.get()), 0);
        handheldEndSession(); // closes what a failed call has left open
    }

    // One without a fault.
    void sync(bool slow = false) {
        hotSync(slow);
        Strings log;
        for (std::uint64_t index = 0; index < hotSyncLogCount(); ++index) {
            log.push_back(std::to_string(hotSyncLogActivity(index)) + ' ' + hotSyncLogText(index));
        }
        ASSERT_THAT(log, ElementsAre("19 Memo Pad", "20 Memo Pad"));
    }

    // After a HotSync both sides hold the same, and another one moves nothing.
    void expectSettled() {
        EXPECT_EQ(onDevice(), inNotes());
        const std::vector<HandheldRecord> records = database().records().all();
        const Strings versions = versionsInNotes();
        sync();
        EXPECT_EQ(database().records().all(), records);
        EXPECT_EQ(versionsInNotes(), versions);
    }

    void syncAndSettle(bool slow = false) {
        sync(slow);
        expectSettled();
    }

    HandheldDatabase& database() { return *handheld.find("MemoDB"); }

    std::uint32_t add(const std::string& text, std::uint8_t category = 0) {
        return database().addRecord(textBytes(text), category);
    }

    void edit(std::uint32_t id, const std::string& text) {
        ASSERT_TRUE(database().editRecord(id, textBytes(text)));
    }

    static std::vector<std::uint8_t> textBytes(const std::string& text) {
        return {text.c_str(), text.c_str() + text.size() + 1};
    }

    std::string categoryName(std::size_t slot) {
        return reinterpret_cast<const char*>(database().appInfo()->data() + 2 + 16 * slot);
    }

    static std::string asLine(const std::string& subject, const std::string& body,
                              const std::string& category) {
        return subject + " | " + body + " | " + category;
    }

    // "subject | body | category", sorted, as Notes has the memos of the device.
    Strings onDevice() {
        Strings lines;
        for (const HandheldRecord& record : database().records().all()) {
            PalmMemoRecord memo;
            memo.setText(reinterpret_cast<const char*>(record.data.data()));
            NotesJournalRecord journal;
            setJournalText(journal, memo);
            lines.push_back(asLine(journal.subject, journal.body,
                                   record.category == 0 ? "" : categoryName(record.category)));
        }
        std::sort(lines.begin(), lines.end());
        return lines;
    }

    // The first that has a place in the device's table; empty for none.
    static std::string deviceCategory(const Strings& categories) {
        for (const std::string& name : categories) {
            if (name.size() <= 15) return name;
        }
        return {};
    }

    Strings inNotes() {
        Strings lines;
        for (const Document& document : office->documents()) {
            lines.push_back(asLine(firstValue(document.properties, "Subject"),
                                   firstValue(document.properties, "Body"),
                                   deviceCategory(toMemo(document).categories)));
        }
        std::sort(lines.begin(), lines.end());
        return lines;
    }

    Strings versionsInNotes() {
        Strings lines;
        for (const Document& document : office->documents())
            lines.push_back(document.unid + ' ' + std::to_string(document.sequence));
        return lines;
    }

    std::unique_ptr<Office> office;
};

TEST_F(MemoReplication, NewMemosGoBothWays) {
    add("Shopping\nMilk");
    add("Subject: Report\nDone", 1);
    office->add({.subject = "Lunch", .body = "Bring food", .categories = {"Personal"}});
    syncAndSettle();
    EXPECT_THAT(inNotes(), ElementsAre("Lunch | Bring food | Personal", "Report | Done | Business",
                                       "Shopping | Shopping\nMilk | "));
    EXPECT_EQ(database().records().size(), 3U);
    EXPECT_EQ(database().records().find(3)->category, 2);
}

TEST_F(MemoReplication, ChangesGoBothWays) {
    const std::uint32_t id = add("Milk");
    office->add({.subject = "Lunch", .body = "Bring food", .categories = {}});
    syncAndSettle();
    edit(id, "Cream");
    ASSERT_TRUE(database().moveRecord(id, 2));
    office->change(office->documents()[0],
                   {.subject = "Dinner", .body = "Bring wine", .categories = {"Business"}});
    syncAndSettle();
    EXPECT_THAT(inNotes(), ElementsAre("Cream | Cream | Personal", "Dinner | Bring wine | Business"));
}

TEST_F(MemoReplication, DeletionsGoBothWays) {
    const std::uint32_t milk = add("Milk");
    add("Bread");
    office->add({.subject = "Lunch", .body = "", .categories = {}});
    syncAndSettle();
    ASSERT_TRUE(database().deleteRecord(milk));
    for (const Document& document : office->documents()) {
        if (toMemo(document).subject == "Lunch") office->remove(document);
    }
    syncAndSettle();
    EXPECT_THAT(inNotes(), ElementsAre("Bread | Bread | "));
}

TEST_F(MemoReplication, AnArchivedMemoStaysInNotesAlone) {
    const std::uint32_t milk = add("Milk");
    add("Bread");
    syncAndSettle();
    ASSERT_TRUE(database().archiveRecord(milk));
    sync();
    EXPECT_THAT(inNotes(), ElementsAre("Bread | Bread | ", "Milk | Milk | "));
    EXPECT_THAT(onDevice(), ElementsAre("Bread | Bread | "));
    sync();
    EXPECT_THAT(inNotes(), ElementsAre("Bread | Bread | ", "Milk | Milk | "));
    EXPECT_THAT(onDevice(), ElementsAre("Bread | Bread | "));
}

TEST_F(MemoReplication, AMemoArchivedBeforeItsFirstHotSyncReachesNotes) {
    ASSERT_TRUE(database().archiveRecord(add("Milk")));
    sync();
    EXPECT_THAT(inNotes(), ElementsAre("Milk | Milk | "));
    EXPECT_THAT(onDevice(), IsEmpty());
}

TEST_F(MemoReplication, ACategoryThatIsUnknownToTheDeviceTakesAFreeSlot) {
    office->add({.subject = "Lunch", .body = "", .categories = {"Garden"}});
    syncAndSettle();
    EXPECT_EQ(categoryName(3), "Garden"); // behind Unfiled, Business and Personal
    EXPECT_EQ(database().records().at(0).category, 3);
}

TEST_F(MemoReplication, UnderTheDevicesRuleAConflictEndsWithItsVersion) {
    const std::uint32_t id = add("Milk");
    syncAndSettle();
    edit(id, "Cream");
    office->change(office->documents()[0], {.subject = "Butter", .body = "", .categories = {}});
    syncAndSettle();
    EXPECT_THAT(inNotes(), ElementsAre("Cream | Cream | "));
}

TEST_F(MemoReplication, UnderNotesRuleAConflictEndsWithBoth) {
    startAfresh('S');
    const std::uint32_t id = add("Milk");
    syncAndSettle();
    edit(id, "Cream");
    office->change(office->documents()[0], {.subject = "Butter", .body = "", .categories = {}});
    syncAndSettle();
    EXPECT_THAT(inNotes(), ElementsAre("Butter |  | ", "Cream | Cream | "));
}

TEST_F(MemoReplication, AChangeLosesAgainstADeletionOnTheOtherSide) {
    const std::uint32_t milk = add("Milk");
    const std::uint32_t bread = add("Bread");
    syncAndSettle();
    edit(milk, "Cream");
    ASSERT_TRUE(database().deleteRecord(bread));
    for (const Document& document : office->documents()) {
        if (toMemo(document).subject == "Milk") {
            office->remove(document);
        } else {
            office->change(document, {.subject = "Toast", .body = "", .categories = {}});
        }
    }
    syncAndSettle();
    EXPECT_THAT(inNotes(), IsEmpty());
}

TEST_F(MemoReplication, AClearStartsTheDeviceAnewFromNotes) {
    office->add({.subject = "Lunch", .body = "", .categories = {"Personal"}});
    office->add({.subject = "Dinner", .body = "", .categories = {}});
    syncAndSettle();
    add("Never sent");
    configure(NextReplication::Clear);
    hotSync();
    // The database is made anew, without a category table until the application is started.
    EXPECT_THAT(onDevice(), ElementsAre("Dinner |  | "));
    EXPECT_THAT(inNotes(), ElementsAre("Dinner |  | ", "Lunch |  | Personal"));
    EXPECT_EQ(ConfigurationDatabase(handheld).applications().at(memoCategory).type, NextReplication::Normal);
    Handheld fresh;
    addStandardDatabases(fresh);
    database().setAppInfo(*fresh.find("MemoDB")->appInfo());
    syncAndSettle();
    EXPECT_THAT(inNotes(), ElementsAre("Dinner |  | ", "Lunch |  | Personal"));
}

TEST_F(MemoReplication, AResetTakesWhatNotesHasAndLeavesTheRest) {
    const std::uint32_t milk = add("Milk", 1);
    syncAndSettle();
    edit(milk, "Cream");
    add("Bread");
    configure(NextReplication::Reset);
    sync();
    EXPECT_THAT(inNotes(), ElementsAre("Milk | Milk | Business"));
    EXPECT_THAT(onDevice(), UnorderedElementsAre("Milk | Milk | Business", "Bread | Bread | "));
    EXPECT_EQ(ConfigurationDatabase(handheld).applications().at(memoCategory).type, NextReplication::Normal);
    configure(NextReplication::Slow); // finds the new record, whose flag the reset took
    syncAndSettle();
    EXPECT_THAT(inNotes(), ElementsAre("Bread | Bread | ", "Milk | Milk | Business"));
}

TEST_F(MemoReplication, ASlowSessionFindsWhatTheFlagsDoNotTell) {
    const std::uint32_t milk = add("Milk");
    const std::uint32_t bread = add("Bread");
    syncAndSettle();
    ASSERT_TRUE(database().eraseRecord(milk));
    ASSERT_TRUE(database().patchRecord(bread, 0, {'#'}));
    sync();
    EXPECT_THAT(inNotes(), ElementsAre("Bread | Bread | ", "Milk | Milk | "));
    syncAndSettle(true);
    EXPECT_THAT(inNotes(), ElementsAre("#read | #read | "));
}

TEST_F(MemoReplication, AFastSessionIsANormalOne) {
    add("Milk");
    configure(NextReplication::Fast);
    syncAndSettle();
    EXPECT_THAT(inNotes(), ElementsAre("Milk | Milk | "));
}

TEST_F(MemoReplication, ManyMemosComeInSeveralPasses) {
    for (int i = 0; i < 1200; ++i) {
        office->add({.subject = "Memo " + std::to_string(i), .body = "text", .categories = {}});
    }
    syncAndSettle();
    EXPECT_EQ(database().records().size(), 1200U);
}

// The call that was made to fail; empty where the session ended before its turn.
std::string failedCall() {
    for (std::uint64_t index = 0; index < handheldTraceCount(); ++index) {
        const std::string line = handheldTraceLine(index);
        if (line.find(" -> 0x4006") != std::string::npos) return line;
    }
    return {};
}

// Each call of a HotSync fails in its turn, and a good one follows.
TEST_F(MemoReplication, AFailedCallLosesNothing) {
    const Strings expected = {"Cream | Cream | ", "Dinner |  | Garden", "New | New | ", "Notice |  | "};
    Strings untidy;
    handheldSetTracing(1);
    for (std::uint64_t number = 1;; ++number) {
        SCOPED_TRACE("call " + std::to_string(number));
        startAfresh();
        const std::uint32_t milk = add("Milk");
        const std::uint32_t bread = add("Bread");
        office->add({.subject = "Lunch", .body = "noon", .categories = {"Personal"}});
        sync();
        edit(milk, "Cream");
        ASSERT_TRUE(database().deleteRecord(bread));
        add("New");
        for (const Document& document : office->documents()) {
            if (toMemo(document).subject == "Lunch")
                office->change(document, {.subject = "Dinner", .body = "", .categories = {"Garden"}});
        }
        office->add({.subject = "Notice", .body = "", .categories = {}});
        handheldRestartCount();
        handheldFailCall(number, 0x4006);
        hotSync();
        handheldMend();
        const std::string call = failedCall();
        sync();
        EXPECT_THAT(onDevice(), testing::IsSupersetOf(expected));
        EXPECT_THAT(inNotes(), testing::IsSupersetOf(expected));
        if (onDevice() != expected || inNotes() != expected) untidy.push_back(call);
        if (call.empty()) break;
    }
    // Without the index of its blocks, whose old records are deleted first, the state knows nothing, and all
    // counts as new. The last is the record that comes and goes as flags are reset, and stays.
    EXPECT_THAT(untidy, ElementsAre(testing::HasSubstr("category 4"), testing::StartsWith("SyncDeleteRec(")));
}

// Random edits on both sides. A seed makes one history, always the same.
class History {
public:
    History(std::uint32_t seed, HandheldDatabase& database, Office& office)
        : random_(seed), database_(database), office_(office) {}

    std::uint32_t pick(std::uint32_t limit) { return static_cast<std::uint32_t>(random_() % limit); }

    void editBothSides() {
        for (std::uint32_t left = pick(4); left > 0; --left) editDevice();
        for (std::uint32_t left = pick(4); left > 0; --left) editNotes();
    }

private:
    void editDevice() {
        const RecordList& records = database_.records();
        std::vector<std::uint32_t> live;
        for (const HandheldRecord& record : records.all()) {
            if (!record.isGone()) live.push_back(record.id);
        }
        const std::uint32_t what = pick(live.empty() ? 1 : 4);
        const std::uint32_t id = live.empty() ? 0 : live[pick(static_cast<std::uint32_t>(live.size()))];
        const std::string text = memoText();
        const std::vector<std::uint8_t> bytes(text.c_str(), text.c_str() + text.size() + 1);
        const auto category = static_cast<std::uint8_t>(pick(3));
        switch (what) {
        case 0: database_.addRecord(bytes, category); break;
        case 1: database_.editRecord(id, bytes); break;
        case 2: database_.moveRecord(id, category); break;
        default: database_.deleteRecord(id); break;
        }
    }

    void editNotes() {
        const std::vector<Document> documents = office_.documents();
        const std::uint32_t what = pick(documents.empty() ? 1 : 3);
        const std::size_t index = documents.empty() ? 0 : pick(static_cast<std::uint32_t>(documents.size()));
        const Memo memo{word(), word() + "\n" + word(), categories()};
        switch (what) {
        case 0: office_.add(memo); break;
        case 1: office_.change(documents[index], memo); break;
        default: office_.remove(documents[index]); break;
        }
    }

    std::string word() {
        static constexpr const char* words[] = {"Milk", "Bread", "Lunch at noon", "a=b", "Report", "x"};
        return words[pick(6)];
    }

    std::string memoText() {
        switch (pick(5)) {
        case 0: return "";
        case 1: return word();
        case 2: return "Subject: " + word() + '\n' + word();
        case 3: return "\n\n" + word();
        default: return word() + '\n' + word() + '\n';
        }
    }

    // None of the names is the device's word for no category.
    Strings categories() {
        static constexpr const char* names[] = {"Business", "Garden", "Home", "A name that is too long"};
        Strings result;
        for (std::uint32_t left = pick(3); left > 0; --left) result.emplace_back(names[pick(4)]);
        return result;
    }

    std::mt19937 random_;
    HandheldDatabase& database_;
    Office& office_;
};

TEST_F(MemoReplication, RandomEditsConverge) {
    for (std::uint32_t seed = 1; seed <= 500; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        startAfresh(seed % 2 == 0 ? 'C' : 'S');
        History history(seed, database(), *office);
        for (int session = 0; session < 4; ++session) {
            history.editBothSides();
            sync(history.pick(4) == 0);
            ASSERT_EQ(onDevice(), inNotes()) << "session " << session;
        }
        expectSettled();
        if (HasFailure()) return;
    }
}

} // namespace
} // namespace tsr
