#include "replication/Histories.h"

#include <algorithm>
#include <iterator>

#include "replication/historyCount.h"

namespace tsr::test {

void Histories::expectConvergence(const Kinds& kinds, std::uint32_t seeds) {
    for (std::uint32_t seed = 1; seed <= historyCount(seeds) && !HasFailure(); ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        run(kinds, seed);
    }
}

void Histories::run(const Kinds& kinds, std::uint32_t seed) {
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

void Histories::runRound(RandomWords& random, std::vector<History>& histories) {
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

Course Histories::randomCourse(RandomWords& random) {
    static constexpr Course rare[] = {Course::Slow, Course::Fast, Course::Reset, Course::Clear};
    const std::uint32_t which = random.below(9);
    return which < std::size(rare) ? rare[which] : Course::Normal;
}

// One HotSync, in which each application has its turn.
void Histories::hotSync(std::vector<History>& histories, bool slow) {
    for (History& history : histories) history.replica().runConduit(slow);
    handheldEndSession();
}

} // namespace tsr::test
