#pragma once

#include <cstdint>
#include <vector>

#include "replication/ContactItems.h"
#include "replication/History.h"
#include "replication/MemoItems.h"
#include "replication/ReplicationTest.h"
#include "replication/TaskItems.h"

namespace tsr::test {

// Random edits on both sides over many HotSyncs of every type. A history is what its seed makes of it.
class Histories : public ReplicationTest {
protected:
    using Kinds = std::vector<const ItemKind*>; // in the order in which a HotSync takes them

    void expectConvergence(const Kinds& kinds, std::uint32_t seeds);
    void run(const Kinds& kinds, std::uint32_t seed);

    const MemoItems memos;
    const ContactItems contacts;
    const TaskItems tasks;

private:
    static void runRound(RandomWords& random, std::vector<History>& histories);
    static Course randomCourse(RandomWords& random);
    static void hotSync(std::vector<History>& histories, bool slow);
};

} // namespace tsr::test
