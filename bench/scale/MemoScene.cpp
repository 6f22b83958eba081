#include "bench/scale/MemoScene.h"

#include <memory>
#include <stdexcept>
#include <string>

#include "conduit/openConduit.h"
#include "handheld/ConfigurationDatabase.h"
#include "handheld/logControl.h"
#include "handheld/standardDatabases.h"
#include "handheld/syncControl.h"
#include "tessera/Memo.h"
#include "tessera/passwords.h"

namespace tsr::bench {

namespace {

constexpr std::uint32_t memoCreator = 0x6D656D6F;
constexpr std::uint8_t memoConfiguration = 7;
constexpr std::int64_t noon = 1012998896;
constexpr std::uint8_t categories = 3; // Unfiled, Business and Personal
constexpr const char* applicationDatabase = "MemoDB";
constexpr const char* syncDatabase = "MemoSync";

const std::string userName = "Max";
const std::string password = "pw";
const std::string categoryNames[categories] = {"", "Business", "Personal"};

std::string subjectOf(std::size_t number) { return "Memo " + std::to_string(number); }

std::string bodyOf(std::size_t number) {
    return subjectOf(number)
         + "\nTwo pounds of apples, flour, milk and a dozen of eggs\nCall back before noon\n";
}

void addSampleUser(Store& store) {
    User user;
    user.name = userName;
    store.addUser(user, hashPassword(password, PasswordCost::Minimal));
}

std::uint8_t categoryOf(std::size_t number) { return static_cast<std::uint8_t>(number % categories); }

} // namespace

MemoScene::MemoScene(std::size_t memos, Place place)
    : memos_(memos), file_(addSampleUser), store_(file_.name()), service_(store_, [] { return noon; }),
      server_(service_, "127.0.0.1", 0) {
    journal_ = store_.database(store_.findUser(userName)->id, journalKind).id;
    handheld_.clock = static_cast<std::uint32_t>(noon);
    addStandardDatabases(handheld_);
    configure();
    place == Place::Handheld ? addToHandheld() : addToNotes();
    server_.start();
    attach();
}

MemoScene::~MemoScene() {
    if (handheldAttached() == &handheld_) handheldDetach();
}

void MemoScene::attach() {
    handheldDetach();
    handheldAttach(&handheld_);
}

void MemoScene::configure() {
    ConnectionChoice connection;
    connection.userName = userName;
    connection.password = password;
    connection.serverAddress = "127.0.0.1";
    connection.serverPort = std::to_string(port());
    ApplicationChoice choice;
    choice.type = NextReplication::Normal;
    ConfigurationDatabase configuration(handheld_);
    configuration.setConnection(connection);
    configuration.setApplication(memoConfiguration, choice);
}

void MemoScene::addToHandheld() {
    HandheldDatabase& database = *handheld_.find(applicationDatabase);
    for (std::size_t number = 0; number < memos_; ++number) {
        const std::string text = bodyOf(number);
        database.addRecord({text.c_str(), text.c_str() + text.size() + 1}, categoryOf(number));
    }
}

void MemoScene::addToNotes() {
    SqliteTransaction transaction = store_.transaction();
    for (std::size_t number = 0; number < memos_; ++number) {
        Memo memo{subjectOf(number), bodyOf(number), {}};
        if (categoryOf(number) != 0) memo.categories.push_back(categoryNames[categoryOf(number)]);
        store_.addDocument(journal_, memoKind, toProperties(memo));
    }
    transaction.commit();
}

void MemoScene::hotSync() {
    hotSyncLogClear();
    const auto properties = std::make_unique<SyncProperties>();
    properties->creator = memoCreator;
    openConduit(nullptr, properties.get());
    if (hotSyncLogCount() == 2 && std::string(hotSyncLogText(1)) == "Memo Pad" && hotSyncLogActivity(1) == 20)
        return;
    throw std::runtime_error("a HotSync failed");
}

void MemoScene::requireSettled() {
    const std::size_t onHandheld = handheld_.find(applicationDatabase)->records().size();
    const std::size_t inNotes = store_.versions(journal_, memoKind).size();
    if (onHandheld != memos_ || inNotes != memos_) throw std::runtime_error("memos were lost or doubled");
}

bool MemoScene::hasSameRecords(const MemoScene& other) const {
    for (const char* name : {applicationDatabase, syncDatabase}) {
        if (!(*handheld_.find(name) == *other.handheld_.find(name))) return false;
    }
    return true;
}

} // namespace tsr::bench
