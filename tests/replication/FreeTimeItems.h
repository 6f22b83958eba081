#pragma once

#include "handheld/FreeTimeDatabase.h"
#include "replication/ItemKind.h"
#include "tessera/Meeting.h"
#include "tessera/UserDatabase.h"

namespace tsr::test {

// The free time of colleagues, which the handheld is told week by week. It is made of their meetings, and not
// configured: the handheld has it or not.
class FreeTimeItems : public ReplicatedKind {
public:
    const KnownApplication& application() const override {
        static constexpr KnownApplication freeTime{"freetime", FreeTimeDatabase::databaseName, vellumCreator,
                                                   0};
        return freeTime;
    }
    const char* title() const override { return "FreeTime"; }
    const char* databaseKind() const override { return mailDatabaseKind; }
    const char* documentKind() const override { return meetingKind; }
};

} // namespace tsr::test
