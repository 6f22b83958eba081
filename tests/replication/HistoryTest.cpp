// Random edits on both sides over many HotSyncs of every type.

#include "replication/History.h"
#include <algorithm>

#include "replication/ContactItems.h"
#include "replication/MemoItems.h"
#include "replication/ReplicationTest.h"
#include "replication/TaskItems.h"

namespace tsr {
namespace {

using test::Course;
using test::History;
using test::ItemKind;
using test::ItemReplica;
using test::RandomWords;

class Histories : public test::ReplicationTest {
protected:
    using Kinds = std::vector<const ItemKind*>; // in the order in which a HotSync takes them

    void expectConvergence(const Kinds& kinds, std::uint32_t seeds) {
        for (std::uint32_t seed = 1; seed <= seeds && !HasFailure(); ++seed) {
            SCOPED_TRACE("seed " + std::to_string(seed));
            run(kinds, seed);
        }
    }

    const test::MemoItems memos;
    const test::ContactItems contacts;
    const test::TaskItems tasks;

private:
    void run(const Kinds& kinds, std::uint32_t seed) {
        connectAfresh();
        std::vector<ItemReplica> replicas;
        for (const ItemKind* const kind : kinds) replicas.emplace_back(*kind, handheld, office);
        std::vector<History> histories;
        for (ItemReplica& replica : replicas) histories.emplace_back(replica, seed % 2 == 0 ? 'C' : 'S');
        RandomWords random(seed);
        for (int round = 0; round < 5 && !HasFailure(); ++round) {
            SCOPED_TRACE("round " + std::to_string(round));
            runRound(random, histories);
        }
    }

    static void runRound(RandomWords& random, std::vector<History>& histories) {
        const bool slow = random.below(10) == 0;
        for (History& history : histories) {
            history.edit(random);
            history.prepare(slow ? Course::Normal : randomCourse(random), slow);
        }
        hotSync(histories, slow);
        for (History& history : histories) history.expectFirstOutcome();
        if (std::any_of(histories.begin(), histories.end(), [](auto& each) { return each.needsAnother(); }))
            hotSync(histories, false);
        for (History& history : histories) history.expectAgreement();
        for (History& history : histories) history.rememberAll();
        hotSync(histories, false);
        for (History& history : histories) history.expectNothingMoved();
    }

    static Course randomCourse(RandomWords& random) {
        static constexpr Course rare[] = {Course::Slow, Course::Fast, Course::Reset, Course::Clear};
        const std::uint32_t which = random.below(9);
        return which < std::size(rare) ? rare[which] : Course::Normal;
    }

    // One HotSync, in which each application has its turn.
    static void hotSync(std::vector<History>& histories, bool slow) {
        for (History& history : histories) history.replica().runConduit(slow);
        handheldEndSession();
    }
};

TEST_F(Histories, MemosConverge) { expectConvergence({&memos}, 300); }

TEST_F(Histories, ContactsConverge) { expectConvergence({&contacts}, 300); }

TEST_F(Histories, TasksConverge) { expectConvergence({&tasks}, 300); }

TEST_F(Histories, AllApplicationsConvergeInOneHotSync) {
    expectConvergence({&contacts, &memos, &tasks}, 200);
}

} // namespace
} // namespace tsr
