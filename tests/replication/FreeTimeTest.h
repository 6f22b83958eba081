#pragma once

#include "replication/FreeTimeItems.h"
#include "replication/ReplicationTest.h"

namespace tsr::test {

// With the free-time application on the handheld, and colleagues on the server.
class FreeTimeTest : public ReplicationTest, protected Replica {
protected:
    FreeTimeTest() : Replica(kindOfItems(), handheld, office) { FreeTimeDatabase::create(handheld); }

    void startAfresh() {
        connectAfresh();
        FreeTimeDatabase::create(handheld);
        setClocks(noon);
    }

    FreeTimeDatabase list() { return FreeTimeDatabase(handheld); }

    void setClocks(std::int64_t secondsSince1970) {
        office->setClock(secondsSince1970);
        setDesktopClock(secondsSince1970);
    }

    // Gives the UNID.
    std::string addMeeting(std::int64_t user, std::int64_t start, std::uint32_t minutes) {
        Meeting meeting;
        meeting.subject = "Busy";
        meeting.start = start;
        meeting.minutes = minutes;
        Store& store = office->store();
        return store.addDocument(store.mailDatabase(user).id, meetingKind, toProperties(meeting)).unid;
    }

private:
    static const FreeTimeItems& kindOfItems() {
        static const FreeTimeItems kind;
        return kind;
    }
};

} // namespace tsr::test
