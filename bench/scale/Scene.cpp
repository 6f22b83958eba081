#include "bench/scale/Scene.h"

#include <memory>
#include <stdexcept>

#include "conduit/openConduit.h"
#include "handheld/ConfigurationDatabase.h"
#include "handheld/logControl.h"
#include "handheld/standardDatabases.h"
#include "handheld/syncControl.h"
#include "tessera/passwords.h"

namespace tsr::bench {

namespace {

const std::string userName = "Max";
const std::string password = "pw";
constexpr std::uint16_t wholeYear = 366; // days of the window, which only meetings have

void addSampleUser(Store& store) {
    User user;
    user.name = userName;
    store.addUser(user, hashPassword(password, PasswordCost::Minimal));
}

} // namespace

Scene::Scene(std::size_t items, const KnownApplication& application, const char* title,
             const char* syncDatabase, const char* databaseKind, const char* documentKind)
    : items_(items), application_(application), title_(title), syncDatabase_(syncDatabase),
      databaseKind_(databaseKind), documentKind_(documentKind), file_(addSampleUser), store_(file_.name()),
      service_(store_, [] { return noon; }), server_(service_, "127.0.0.1", 0) {}

Scene::~Scene() {
    if (handheldAttached() == &handheld_) handheldDetach();
}

void Scene::fill(Place place) {
    databaseId_ = store_.database(store_.findUser(userName)->id, databaseKind_).id;
    handheld_.clock = static_cast<std::uint32_t>(noon);
    addStandardDatabases(handheld_);
    configure();
    if (place == Place::Notes) {
        addToNotes();
    } else {
        HandheldDatabase& database = *handheld_.find(application_.database);
        for (std::size_t number = 0; number < items_; ++number) addToHandheld(database, number);
    }
    server_.start();
    attach();
}

void Scene::attach() {
    handheldDetach();
    handheldAttach(&handheld_);
}

void Scene::configure() {
    ConnectionChoice connection;
    connection.userName = userName;
    connection.password = password;
    connection.serverAddress = "127.0.0.1";
    connection.serverPort = std::to_string(port());
    ApplicationChoice choice;
    choice.type = NextReplication::Normal;
    choice.daysBefore = wholeYear;
    choice.daysAfter = wholeYear;
    ConfigurationDatabase configuration(handheld_);
    configuration.setConnection(connection);
    configuration.setApplication(application_.configurationCategory, choice);
}

void Scene::addToNotes() {
    SqliteTransaction transaction = store_.transaction();
    for (std::size_t number = 0; number < items_; ++number)
        store_.addDocument(databaseId_, documentKind_, document(number));
    transaction.commit();
}

void Scene::hotSync() {
    hotSyncLogClear();
    const auto properties = std::make_unique<SyncProperties>();
    properties->creator = application_.creator;
    openConduit(nullptr, properties.get());
    if (hotSyncLogCount() == 2 && std::string(hotSyncLogText(1)) == title_ && hotSyncLogActivity(1) == 20)
        return;
    throw std::runtime_error("a HotSync failed");
}

void Scene::requireSettled() {
    const std::size_t onHandheld = handheld_.find(application_.database)->records().size();
    const std::size_t inNotes = store_.versions(databaseId_, documentKind_).size();
    if (onHandheld == items_ && inNotes == items_) return;
    throw std::runtime_error("of " + std::to_string(items_) + " items the handheld has "
                             + std::to_string(onHandheld) + " and Notes " + std::to_string(inNotes));
}

bool Scene::hasSameRecords(const Scene& other) const {
    for (const char* const name : {static_cast<const char*>(application_.database), syncDatabase_}) {
        if (!(*handheld_.find(name) == *other.handheld_.find(name))) return false;
    }
    return true;
}

} // namespace tsr::bench
