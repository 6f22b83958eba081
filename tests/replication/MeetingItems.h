#pragma once

#include "replication/ItemKind.h"
#include "tessera/Meeting.h"
#include "tessera/UserDatabase.h"

namespace tsr::test {

// Meetings. One may be several records; calendars.h compares them.
class MeetingItems : public ReplicatedKind {
public:
    const KnownApplication& application() const override { return *findApplication("datebook"); }
    const char* title() const override { return "Date Book"; }
    const char* databaseKind() const override { return mailDatabaseKind; }
    const char* documentKind() const override { return meetingKind; }
};

} // namespace tsr::test
