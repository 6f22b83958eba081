#pragma once

#include <chrono>
#include <cstdint>
#include <set>
#include <string>

#include "handheld/forms/DatebookForm.h"
#include "replication/MeetingItems.h"
#include "replication/ReplicationTest.h"
#include "replication/calendars.h"

namespace tsr::test {

// Random edits of meetings on both sides over many HotSyncs of every type, in zones around the world. A
// history is what its seed makes of it.
class DatebookHistory : public ApplicationTest<MeetingItems, Replica> {
protected:
    void run(std::uint32_t seed);

    // What it is made of.
    void begin(std::uint32_t seed);
    void edit(RandomWords& random);

private:
    void configure(NextReplication type);
    void replicate(RandomWords& random); // to a clean HotSync, after which both sides agree
    void expectAgreement();

    void editDevice(RandomWords& random);
    void addOnDevice(RandomWords& random);
    static void editFields(RandomWords& random, FieldValues& values);
    void editNotes(RandomWords& random);
    Meeting randomMeeting(RandomWords& random);
    static void editPattern(RandomWords& random, Meeting& meeting);

    ZoneRule zone_;
    char rule_ = 'C';
    std::set<std::string> added_; // subjects, which are written once, of what a HotSync must not lose
};

} // namespace tsr::test
