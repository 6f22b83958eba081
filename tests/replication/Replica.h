#pragma once

#include <memory>

#include "handheld/ConfigurationDatabase.h"
#include "handheld/Handheld.h"
#include "replication/ItemKind.h"
#include "replication/Office.h"
#include "replication/SessionHost.h"

namespace tsr::test {

// The items of one application on both sides, and the HotSyncs between them.
class Replica {
public:
    // All of them outlive it; the office may change meanwhile.
    Replica(const ReplicatedKind& kind, Handheld& handheld, const std::unique_ptr<Office>& office)
        : kind_(kind), handheld_(handheld), office_(office) {}

    const ReplicatedKind& kind() const { return kind_; }

    void configure(NextReplication type, char conflictRule = 'C');
    NextReplication nextReplication();

    // As the HotSync manager does it for this application; several of them make one HotSync. Afterwards log()
    // has its entries, each behind the number of its activity.
    void runConduit(bool slow, std::uint64_t failedCall = 0);
    const Strings& log() const { return last_.log; }
    void expectCleanLog() const;

    // One HotSync of this application alone, whatever comes of it.
    void hotSync(bool slow = false);
    void sync(bool slow = false); // without a fault

    // One whose call `number` of the handheld, from 1, fails with 0x4006. Gives the call as it was made;
    // nothing where the session ended before its turn.
    std::string hotSyncWithFailedCall(std::uint64_t number);

    std::string tracedHotSync(); // gives the trace

    void expectNothingMoves(); // in another HotSync

    void setDesktopClock(std::int64_t secondsSince1970) { desktopClock_ = secondsSince1970; }

    HandheldDatabase& database() { return *handheld_.find(kind_.application().database); }
    std::string categoryName(std::size_t slot);
    void startApplication(); // which makes the categories of a database that has none

    std::vector<Document> documents();
    std::string addToNotes(const Properties& properties); // gives the UNID
    void replaceInNotes(const Document& document);
    void removeFromNotes(const Document& document);

    Strings versionsInNotes();

private:
    void run(SessionOrder order);

    const ReplicatedKind& kind_;
    Handheld& handheld_;
    const std::unique_ptr<Office>& office_;
    std::int64_t desktopClock_ = noon;
    SessionRecord last_;
};

// Of an application whose items are one record each.
class ItemReplica : public Replica {
public:
    ItemReplica(const ItemKind& kind, Handheld& handheld, const std::unique_ptr<Office>& office)
        : Replica(kind, handheld, office), kind_(kind) {}

    const ItemKind& kind() const { return kind_; }

    // After a HotSync both sides hold the same, and another one moves nothing.
    void expectSettled();
    void syncAndSettle(bool slow = false);

    // The lines of all items with their categories, "line | category", sorted.
    Strings onDevice();
    Strings inNotes();

    // The first that has a place in the device's table; empty for none.
    static std::string deviceCategory(const Properties& document);

private:
    const ItemKind& kind_;
};

} // namespace tsr::test
