#include "hotsync/runHotSync.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <tuple>
#include <unistd.h>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "handheld/ConfigurationDatabase.h"
#include "handheld/FreeTimeDatabase.h"
#include "handheld/HandheldFolder.h"
#include "handheld/forms/MailForm.h"
#include "handheld/knownDatabases.h"
#include "handheld/standardDatabases.h"
#include "handheld/syncControl.h"
#include "tessera/Meeting.h"
#include "tessera/TcpServer.h"
#include "tessera/mailDocument.h"
#include "tessera/passwords.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

namespace fs = std::filesystem;

const std::string conduitPath = TSR_OUT "/libTsrConduit.so";
constexpr std::int64_t monday = 1012780800; // 2002-02-04 00:00 UTC

// Of the free-time application's records.
constexpr std::uint8_t indexCategory = 2;
constexpr std::uint8_t weekCategory = 4;

// Notes how many calls the handheld has served by the time of the last character written.
class CountingBuffer : public std::stringbuf {
public:
    std::uint64_t calls = 0;

protected:
    int_type overflow(int_type character) override {
        calls = handheldCallCount();
        return std::stringbuf::overflow(character);
    }
    std::streamsize xsputn(const char* text, std::streamsize count) override {
        calls = handheldCallCount();
        return std::stringbuf::xsputn(text, count);
    }
};

struct Ended {
    int exitCode;
    std::string out;
    std::string err;
    std::uint64_t calls;
};

Ended run(const std::vector<std::string>& arguments, bool terminal = false) {
    CountingBuffer buffer;
    std::ostream out(&buffer);
    std::ostringstream err;
    const int exitCode = runHotSync(arguments, out, err, terminal);
    return {exitCode, buffer.str(), err.str(), buffer.calls};
}

bool isOneLine(const std::string& text) {
    return std::count(text.begin(), text.end(), '\n') == 1 && text.ends_with('\n')
        && text.starts_with("hotsync: ");
}

std::map<std::string, std::string> filesIn(const fs::path& folder) {
    std::map<std::string, std::string> files;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        if (!entry.is_regular_file()) continue;
        std::ifstream file(entry.path(), std::ios::binary);
        files[entry.path().string()] = {std::istreambuf_iterator<char>(file), {}};
    }
    return files;
}

// The index of a colleague's weeks with zeros for their record ids, which differ from run to run once a run
// was cut short. Each id must name the week of its entry.
//
//   offset  size    field
//   0       5       colleague, count of weeks
//   5       7 each  date of the week, id of its record (3 bytes), CRC
std::vector<std::uint8_t> indexWithoutIds(const HandheldDatabase& database, std::vector<std::uint8_t> index) {
    for (std::size_t entry = 5; entry + 7 <= index.size(); entry += 7) {
        std::uint32_t id = 0;
        for (std::size_t at = entry + 2; at < entry + 5; ++at) id = id << 8 | std::exchange(index[at], 0);
        const HandheldRecord* week = database.records().find(id);
        EXPECT_TRUE(week != nullptr && week->category == weekCategory && week->data[4] == index[entry]
                    && week->data[5] == index[entry + 1])
            << id;
    }
    return index;
}

// What a user finds on the handheld: the records, in an order that doesn't depend on their ids.
using Contents = std::vector<std::tuple<std::string, int, int, std::vector<std::uint8_t>>>;

Contents contentsOf(const fs::path& folder) {
    Contents contents;
    HandheldFolder opened = HandheldFolder::open(folder);
    for (const auto& [name, database] : opened.handheld().databases) {
        for (const HandheldRecord& record : database.records().all()) {
            const bool isIndex = name == FreeTimeDatabase::databaseName && record.category == indexCategory;
            contents.emplace_back(name, record.category, record.attributes,
                                  isIndex ? indexWithoutIds(database, record.data) : record.data);
        }
    }
    std::sort(contents.begin(), contents.end());
    return contents;
}

std::map<std::uint32_t, HandheldRecord> weeksOf(const fs::path& folder) {
    std::map<std::uint32_t, HandheldRecord> weeks;
    HandheldFolder opened = HandheldFolder::open(folder);
    for (const HandheldRecord& record : opened.handheld().find("VellumFreetime")->records().all())
        if (record.category == weekCategory) weeks.emplace(record.id, record);
    return weeks;
}

// A server with one colleague and his meeting, and a handheld in a folder that looks for his free time.
class RunHotSyncTest : public testing::Test {
protected:
    RunHotSyncTest() : service(store, [] { return monday; }) {
        const auto* test = testing::UnitTest::GetInstance()->current_test_info();
        scratch = fs::path(testing::TempDir()) / ("hotsync-" + std::to_string(getpid()) + "-" + test->name());
        fs::remove_all(scratch);
        fs::create_directories(scratch);
        palm = scratch / "palm";
        addUser("Ann");
        addUser("Bob");
        const UserDatabase calendar = store.mailDatabase(store.findUser("Bob")->id);
        store.addDocument(calendar.id, meetingKind, toProperties({"Review", monday + 10 * 3600, 90, false}));
        server = std::make_unique<TcpServer>(service, "127.0.0.1", 0);
        server->start();
        makeHandheld("secret");
    }
    ~RunHotSyncTest() override { fs::remove_all(scratch); }

    void addUser(const std::string& name) {
        User user;
        user.name = name;
        store.addUser(user, hashPassword("secret", PasswordCost::Minimal));
    }

    void makeHandheld(const std::string& password, bool withAllApplications = false) {
        fs::remove_all(palm);
        HandheldFolder::create(palm, Handheld(), [&](Handheld& handheld) {
            handheld.clock = monday + 8 * 3600;
            FreeTimeDatabase::create(handheld);
            FreeTimeDatabase(handheld).add("Bob");
            ConfigurationDatabase configuration(handheld);
            ConnectionChoice connection;
            connection.userName = "Ann";
            connection.password = password;
            connection.serverAddress = "127.0.0.1";
            connection.serverPort = std::to_string(server->port());
            configuration.setConnection(connection);
            if (withAllApplications) addApplications(handheld);
        });
    }

    static void addApplications(Handheld& handheld) {
        addStandardDatabases(handheld);
        ApplicationChoice choice;
        choice.type = NextReplication::Normal;
        for (const KnownApplication& application : knownApplications)
            ConfigurationDatabase(handheld).setApplication(application.configurationCategory, choice);
    }

    std::vector<std::string> arguments(const fs::path& folder) const {
        return {folder.string(), "--conduit", conduitPath, "--application", "freetime"};
    }
    Ended hotSync(std::vector<std::string> more = {}) const {
        std::vector<std::string> all = arguments(palm);
        all.insert(all.end(), more.begin(), more.end());
        return run(all);
    }

    Store store = Store::inMemory();
    TesseraService service;
    std::unique_ptr<TcpServer> server;
    fs::path scratch;
    fs::path palm;
};

TEST(RunHotSync, RefusesBadArguments) {
    const std::vector<std::vector<std::string>> rows = {
        {},
        {"palm", "--unknown"},
        {"palm", "another"},
        {"palm", "--application", "tetris"},
        {"palm", "--pull-cable", "x"},
        {"palm", "--fail-call", "3"}, // without a code
        {"palm", "--fail-call", "x:1"},
    };
    for (const auto& arguments : rows) {
        const Ended refused = run(arguments);
        EXPECT_EQ(refused.exitCode, 2);
        EXPECT_EQ(refused.out, "");
        EXPECT_TRUE(isOneLine(refused.err)) << refused.err;
    }
}

TEST(RunHotSync, Helps) {
    const Ended help = run({"--help"});
    EXPECT_EQ(help.exitCode, 0);
    EXPECT_EQ(help.err, "");
    for (const char* text : {"--application", "--conduit", "--slow", "--pull-cable", "--fail-call",
                             "Examples:", "Exit codes:", "configure --help"})
        EXPECT_NE(help.out.find(text), std::string::npos) << text;
}

TEST_F(RunHotSyncTest, NeedsAHandheld) {
    const Ended failed = run(arguments(scratch / "nobody"));
    EXPECT_EQ(failed.exitCode, 1);
    EXPECT_TRUE(isOneLine(failed.err)) << failed.err;
    EXPECT_FALSE(fs::exists(scratch / "nobody"));
}

TEST_F(RunHotSyncTest, LeavesADamagedHandheldAlone) {
    std::ofstream(palm / "MemoDB.pdb") << "not a database";
    const auto before = filesIn(palm);
    const Ended failed = hotSync();
    EXPECT_EQ(failed.exitCode, 1);
    EXPECT_TRUE(isOneLine(failed.err)) << failed.err;
    EXPECT_NE(failed.err.find("MemoDB.pdb"), std::string::npos) << failed.err;
    EXPECT_EQ(filesIn(palm), before);
}

TEST_F(RunHotSyncTest, NeedsAConduit) {
    const auto before = filesIn(palm);
    for (const std::string& path : {scratch.string() + "/none.so", std::string(TSR_OUT "/libHSLOG20.so")}) {
        const Ended failed = run({palm.string(), "--conduit", path});
        EXPECT_EQ(failed.exitCode, 1);
        EXPECT_TRUE(isOneLine(failed.err)) << failed.err;
        EXPECT_EQ(filesIn(palm), before);
    }
}

TEST_F(RunHotSyncTest, HasNothingToDoForAnEmptyHandheld) {
    const fs::path empty = scratch / "empty";
    HandheldFolder::create(empty, Handheld());
    const Ended done = run({empty.string(), "--conduit", conduitPath});
    EXPECT_EQ(done.exitCode, 0);
    EXPECT_EQ(done.out, "No application is due on this handheld.\n");
}

TEST_F(RunHotSyncTest, BringsFreeTime) {
    const Ended done = hotSync();
    EXPECT_EQ(done.exitCode, 0) << done.out << done.err;
    EXPECT_EQ(done.err, "");
    EXPECT_NE(done.out.find("FreeTime: finished\n"), std::string::npos) << done.out;

    HandheldFolder opened = HandheldFolder::open(palm);
    const auto colleagues = FreeTimeDatabase(opened.handheld()).colleagues();
    ASSERT_EQ(colleagues.size(), 1u);
    ASSERT_FALSE(colleagues[0].weeks.empty());
    const FreeWeek& week = colleagues[0].weeks.front();
    EXPECT_EQ(week.start.time_since_epoch().count(), monday / 86400);
    // Monday from 9 to 17, quarters 36 to 67, without the meeting from 10:00 to 11:30, quarters 40 to 45.
    for (std::size_t slot = 0; slot < FreeWeek::slotsInDay; ++slot)
        EXPECT_EQ(week.free[slot], (slot >= 36 && slot < 40) || (slot >= 46 && slot < 68)) << slot;
}

TEST_F(RunHotSyncTest, ASecondRunTouchesNoWeek) {
    ASSERT_EQ(hotSync().exitCode, 0);
    const auto weeks = weeksOf(palm);
    ASSERT_FALSE(weeks.empty());
    EXPECT_EQ(hotSync().exitCode, 0);
    EXPECT_EQ(weeksOf(palm), weeks); // ids and attributes included
}

TEST_F(RunHotSyncTest, ShowsProgressInOneLineOnATerminal) {
    const Ended plain = hotSync();
    EXPECT_EQ(plain.out.find('\r'), std::string::npos);
    const Ended live = run(arguments(palm), true);
    EXPECT_EQ(live.exitCode, 0);
    EXPECT_NE(live.out.find('\r'), std::string::npos);
    // What is left on the line at the end is the outcome.
    EXPECT_NE(live.out.find("\rFreeTime: finished\n"), std::string::npos) << live.out;
}

TEST_F(RunHotSyncTest, TellsProgramsInJsonAlone) {
    const Ended done = hotSync({"--json"});
    EXPECT_EQ(done.exitCode, 0);
    const nlohmann::json first = nlohmann::json::parse(done.out); // no progress before, between or behind
    ASSERT_EQ(first.size(), 1u);
    EXPECT_EQ(first[0]["application"], "FreeTime");
    EXPECT_EQ(first[0]["end"], "finished");
    EXPECT_EQ(first[0]["toHandheld"]["new"], weeksOf(palm).size());
    const nlohmann::json second = nlohmann::json::parse(hotSync({"--json"}).out);
    EXPECT_EQ(second[0]["toHandheld"], (nlohmann::json{{"new", 0}, {"changed", 0}, {"deleted", 0}}));
}

TEST_F(RunHotSyncTest, ServesEveryApplicationOfAWholeHandheld) {
    makeHandheld("secret", true);
    Mail mail;
    mail.from = "Bob";
    mail.subject = "Lunch";
    mail.date = monday;
    deliver(store, store.findUser("Ann")->id, mail);
    const Ended done = run({palm.string(), "--conduit", conduitPath});
    EXPECT_EQ(done.exitCode, 0) << done.out << done.err;
    EXPECT_EQ(done.err, "");
    for (const char* title : {"Address", "Date Book", "Memo Pad", "ToDo", "Mail", "FreeTime"})
        EXPECT_NE(done.out.find(std::string(title) + ": finished\n"), std::string::npos) << title << done.out;
    HandheldFolder opened = HandheldFolder::open(palm);
    const auto& messages = opened.handheld().find("MailDB")->records().all();
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_EQ(MailForm().read(messages[0].data).at("subject"), "Lunch");
}

TEST_F(RunHotSyncTest, AWrongPasswordChangesNothing) {
    makeHandheld("guessed");
    const auto before = filesIn(palm);
    const Ended failed = hotSync();
    EXPECT_EQ(failed.exitCode, 1);
    EXPECT_NE(failed.out.find("FreeTime: ABORTED\n"), std::string::npos) << failed.out;
    EXPECT_NE(failed.out.find("  ! The request to authenticate with Tessera Services failed.\n"
                              "    because: "),
              std::string::npos)
        << failed.out;
    EXPECT_EQ(failed.out.find("guessed"), std::string::npos);
    EXPECT_EQ(filesIn(palm), before);
}

TEST_F(RunHotSyncTest, TellsWhyTheServerCannotBeReached) {
    server.reset(); // its port is closed from now on
    const auto before = filesIn(palm);
    const Ended failed = hotSync();
    EXPECT_EQ(failed.exitCode, 1);
    EXPECT_NE(failed.out.find("FreeTime: ABORTED\n"
                              "  ! Unable to connect to Tessera Services.\n"
                              "    because: connect( ) failed: Connection refused\n"),
              std::string::npos)
        << failed.out;
    EXPECT_EQ(filesIn(palm), before);
}

TEST_F(RunHotSyncTest, RecoversFromACablePulledAtEachCall) {
    const fs::path fresh = scratch / "fresh";
    fs::copy(palm, fresh, fs::copy_options::recursive);
    const Ended undisturbed = hotSync();
    ASSERT_EQ(undisturbed.exitCode, 0);
    ASSERT_GT(undisturbed.calls, 10u);
    const Contents contents = contentsOf(palm);
    for (std::uint64_t number = 1; number <= undisturbed.calls; ++number) {
        SCOPED_TRACE(number);
        fs::remove_all(palm);
        fs::copy(fresh, palm, fs::copy_options::recursive);
        const Ended pulled = hotSync({"--pull-cable", std::to_string(number)});
        // The last call closes the database behind a session that is done; nothing hangs on its result.
        EXPECT_EQ(pulled.exitCode, number < undisturbed.calls ? 1 : 0) << pulled.out;
        EXPECT_EQ(pulled.err, "");
        const Ended again = hotSync();
        ASSERT_EQ(again.exitCode, 0) << again.out;
        ASSERT_EQ(contentsOf(palm), contents);
    }
}

TEST_F(RunHotSyncTest, LetsACallFailByOrder) {
    const Ended failed =
        hotSync({"--fail-call", "1:0x4015", "--fail-call", "2:16405"}); // the same, in decimal
    EXPECT_EQ(failed.exitCode, 1) << failed.out;
    EXPECT_NE(failed.out.find("FreeTime: ABORTED\n"), std::string::npos) << failed.out;
    EXPECT_EQ(hotSync().exitCode, 0);
}

} // namespace
} // namespace tsr
