#pragma once

#include <algorithm>
#include <memory>
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

namespace tsr::test {

using Strings = std::vector<std::string>;

inline constexpr std::uint32_t memoCreator = 0x6D656D6F;
inline constexpr std::uint8_t memoCategory = 7; // in the configuration
inline constexpr std::int64_t noon = 1012998896;

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
    void replace(const Document& document) {
        store_.changeDocument(journal_, document.unid, document.properties);
    }
    void remove(const Document& document) { store_.deleteDocument(journal_, document.unid); }

private:
    Store store_ = Store::inMemory();
    TesseraService service_;
    std::int64_t journal_ = 0;
    std::unique_ptr<TcpServer> server_;
};

// Whole HotSyncs of memos between a handheld and a server, both with all that they are made of.
class MemoReplication : public AttachedHandheldTest {
protected:
    MemoReplication() {
        setClock(noon);
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
        ASSERT_THAT(log, testing::ElementsAre("19 Memo Pad", "20 Memo Pad"));
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

} // namespace tsr::test
