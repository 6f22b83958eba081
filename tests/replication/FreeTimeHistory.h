#pragma once

#include <chrono>
#include <map>
#include <set>
#include <string>

#include "replication/FreeTimeTest.h"
#include "replication/RandomWords.h"

namespace tsr::test {

// Random edits of the list of colleagues and of their calendars over many HotSyncs, days apart, in zones
// around the world. A history is what its seed makes of it.
class FreeTimeHistory : public FreeTimeTest {
protected:
    void run(std::uint32_t seed);

    // What it is made of.
    void begin(std::uint32_t seed);
    void edit(RandomWords& random);

private:
    struct Busy {
        std::string unid;
        std::int64_t start = 0;
        std::int64_t end = 0;
    };
    struct Person {
        std::int64_t id = 0; // 0 for one that the server doesn't know
        std::vector<Busy> meetings;
    };

    void editList(RandomWords& random);
    void meet(RandomWords& random);
    void cancel(RandomWords& random);
    Person& chosen(RandomWords& random);

    void expectLog();
    void expectWeeks();
    void expectNoRecordChanges();
    std::map<std::chrono::sys_days, FreeWeek> weeksOf(const Person& person);
    bool isFree(const Person& person, std::int64_t minute) const;

    ZoneRule zone_;
    std::int64_t now_ = noon;
    std::uint16_t searchLength_ = 0;
    std::map<std::string, Person> people_;
    std::set<std::string> listed_;
};

} // namespace tsr::test
