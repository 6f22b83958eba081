#include "replication/Replica.h"

#include <algorithm>

#include "foundation/DebugLogStream.h"
#include "handheld/CategoryTable.h"
#include "handheld/HandheldError.h"
#include "handheld/standardDatabases.h"
#include "handheld/syncControl.h"
#include "tessera/categories.h"

#include "gmock/gmock.h"

namespace tsr::test {

namespace {

std::string lineOf(const ItemKind& kind, const HandheldRecord& record) {
    try {
        return kind.line(record);
    } catch (const HandheldError&) {
        return "unreadable";
    }
}

} // namespace

void Replica::configure(NextReplication type, char conflictRule) {
    ApplicationChoice choice;
    choice.type = type;
    choice.conflictRule = conflictRule;
    ConfigurationDatabase(handheld_).setApplication(kind_.application().configurationCategory, choice);
}

NextReplication Replica::nextReplication() {
    return ConfigurationDatabase(handheld_).applications().at(kind_.application().configurationCategory).type;
}

void Replica::runConduit(bool slow, std::uint64_t failedCall) {
    SessionOrder order;
    order.slow = slow;
    order.failedCall = failedCall;
    run(std::move(order));
}

void Replica::run(SessionOrder order) {
    order.creator = kind_.application().creator;
    order.clock = desktopClock_;
    last_ = sessionHost().run(handheld_, order);
    ASSERT_EQ(last_.result, 0);
}

void Replica::expectCleanLog() const {
    const std::string title = kind_.title();
    ASSERT_THAT(last_.log, testing::ElementsAre("19 " + title, "20 " + title));
}

void Replica::hotSync(bool slow) {
    runConduit(slow);
    handheldEndSession(); // closes what a failed call has left open
}

std::string Replica::hotSyncWithFailedCall(std::uint64_t number) {
    runConduit(false, number);
    handheldEndSession();
    return last_.failedCall;
}

std::string Replica::tracedHotSync() {
    SessionOrder order;
    order.traceFile = DebugLogStream::fileName(kind_.title());
    run(std::move(order));
    handheldEndSession();
    return last_.trace;
}

void Replica::sync(bool slow) {
    hotSync(slow);
    expectCleanLog();
}

void Replica::expectNothingMoves() {
    const std::vector<HandheldRecord> records = database().records().all();
    const Strings versions = versionsInNotes();
    sync();
    EXPECT_EQ(database().records().all(), records);
    EXPECT_EQ(versionsInNotes(), versions);
}

void ItemReplica::expectSettled() {
    EXPECT_EQ(onDevice(), inNotes());
    expectNothingMoves();
}

void ItemReplica::syncAndSettle(bool slow) {
    sync(slow);
    expectSettled();
}

std::string Replica::categoryName(std::size_t slot) {
    return CategoryTable(database()).name(static_cast<std::uint8_t>(slot));
}

void Replica::startApplication() {
    Handheld fresh;
    addStandardDatabases(fresh);
    database().setAppInfo(*fresh.find(kind_.application().database)->appInfo());
}

std::vector<Document> Replica::documents() {
    return office_->store().documents(office_->database(kind_.databaseKind()), kind_.documentKind());
}

std::string Replica::addToNotes(const Properties& properties) {
    return office_->store()
        .addDocument(office_->database(kind_.databaseKind()), kind_.documentKind(), properties)
        .unid;
}

void Replica::replaceInNotes(const Document& document) {
    office_->store().changeDocument(office_->database(kind_.databaseKind()), document.unid,
                                    document.properties);
}

void Replica::removeFromNotes(const Document& document) {
    office_->store().deleteDocument(office_->database(kind_.databaseKind()), document.unid);
}

Strings ItemReplica::onDevice() {
    Strings lines;
    for (const HandheldRecord& record : database().records().all()) {
        const std::string category = record.category == 0 ? "" : categoryName(record.category);
        lines.push_back(lineOf(kind_, record) + " | " + category);
    }
    std::sort(lines.begin(), lines.end());
    return lines;
}

Strings ItemReplica::inNotes() {
    Strings lines;
    for (const Document& document : documents())
        lines.push_back(kind_.lines(document.properties)[0] + " | " + deviceCategory(document.properties));
    std::sort(lines.begin(), lines.end());
    return lines;
}

Strings Replica::versionsInNotes() {
    Strings lines;
    for (const Document& document : documents())
        lines.push_back(document.unid + ' ' + std::to_string(document.sequence));
    return lines;
}

std::string ItemReplica::deviceCategory(const Properties& document) {
    for (const std::string& name : categoriesOf(document)) {
        if (name.size() <= CategoryTable::longestName) return name;
    }
    return {};
}

} // namespace tsr::test
