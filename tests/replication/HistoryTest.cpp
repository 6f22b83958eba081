#include "replication/Histories.h"

namespace tsr {
namespace {

using test::Histories;

TEST_F(Histories, MemosConverge) { expectConvergence({&memos}, 300); }

TEST_F(Histories, ContactsConverge) { expectConvergence({&contacts}, 300); }

TEST_F(Histories, TasksConverge) { expectConvergence({&tasks}, 300); }

TEST_F(Histories, ThreeApplicationsConvergeInOneHotSync) {
    expectConvergence({&contacts, &memos, &tasks}, 200);
}

} // namespace
} // namespace tsr
