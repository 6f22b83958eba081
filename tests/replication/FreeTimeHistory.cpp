#include "replication/FreeTimeHistory.h"

#include "handheld/freeTimeGrid.h"

namespace tsr::test {

namespace {

using std::chrono::days;
using std::chrono::sys_days;

constexpr std::int64_t minute = 60;
constexpr std::int64_t day = 86400;
constexpr std::int64_t slotSeconds = 15 * minute;
constexpr const char* unknown = "Nobody";

sys_days dayOf(std::int64_t seconds) { return sys_days(days(seconds / day)); }
std::int64_t secondsOf(sys_days date) { return date.time_since_epoch().count() * day; }

sys_days mondayOf(sys_days date) { return date - days((std::chrono::weekday(date).c_encoding() + 6) % 7); }

} // namespace

void FreeTimeHistory::run(std::uint32_t seed) {
    begin(seed);
    RandomWords random(seed);
    for (int round = 0; round < 5 && !HasFailure(); ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        edit(random);
        hotSync();
        expectLog();
        expectWeeks();
        expectNoRecordChanges();
    }
}

void FreeTimeHistory::begin(std::uint32_t seed) {
    static constexpr const char* zones[] = {"UTC0", "CET-1CEST,M3.5.0,M10.5.0/3", "EST5EDT,M4.1.0,M10.5.0",
                                            "AEST-10", "IST-5:30"};
    startAfresh();
    zone_ = ZoneRule(zones[seed % std::size(zones)]);
    office->setZone(zone_);
    now_ = noon;
    searchLength_ = FreeTimeDatabase::defaultSearchLength;
    listed_.clear();
    people_.clear();
    people_[unknown];
    for (const char* name : {"Ann", "Bob", "Eve"}) people_[name].id = office->addUser(name);
}

void FreeTimeHistory::edit(RandomWords& random) {
    now_ += random.below(6) * day;
    setClocks(now_);
    for (std::uint32_t left = 1 + random.below(2); left > 0; --left) editList(random);
    for (std::uint32_t left = random.below(5); left > 0; --left) meet(random);
    if (random.flag()) cancel(random);
    if (random.below(4) == 0) {
        searchLength_ = static_cast<std::uint16_t>(random.below(30));
        list().setSearchLength(searchLength_);
    }
}

void FreeTimeHistory::editList(RandomWords& random) {
    static constexpr const char* names[] = {"Ann", "Bob", "Eve", unknown};
    const std::string name = names[random.below(4)];
    if (listed_.erase(name) != 0) {
        list().remove(name);
    } else {
        list().add(name);
        listed_.insert(name);
    }
}

// Of any length, at any minute of the days to come.
void FreeTimeHistory::meet(RandomWords& random) {
    Person& person = chosen(random);
    const std::int64_t start = now_ / day * day + random.below(20 * 1440) * minute;
    const std::uint32_t minutes = random.below(600);
    person.meetings.push_back({addMeeting(person.id, start, minutes), start, start + minutes * minute});
}

void FreeTimeHistory::cancel(RandomWords& random) {
    Person& person = chosen(random);
    if (person.meetings.empty()) return;
    office->store().deleteDocument(office->store().mailDatabase(person.id).id, person.meetings.back().unid);
    person.meetings.pop_back();
}

FreeTimeHistory::Person& FreeTimeHistory::chosen(RandomWords& random) {
    static constexpr const char* names[] = {"Ann", "Bob", "Eve"};
    return people_.at(names[random.below(3)]);
}

void FreeTimeHistory::expectLog() {
    if (!listed_.contains(unknown)) return expectCleanLog();
    EXPECT_THAT(log(), testing::ElementsAre("19 FreeTime",
                                            "22 ** An error occurred whilst attempting to find free time for "
                                            "user 'Nobody'.",
                                            "22 **** There is no user 'Nobody'.", "20 FreeTime"));
}

// A week that has no free time is there where it had some before, and none that is past.
void FreeTimeHistory::expectWeeks() {
    std::set<std::string> names;
    for (const Colleague& colleague : list().colleagues()) {
        SCOPED_TRACE(colleague.name);
        names.insert(colleague.name);
        ASSERT_TRUE(listed_.contains(colleague.name));
        std::map<sys_days, FreeWeek> expected = weeksOf(people_.at(colleague.name));
        for (const FreeWeek& week : colleague.weeks) {
            EXPECT_EQ(week.free, expected[week.start].free) << dateText(week.start);
            EXPECT_GE(week.start, mondayOf(dayOf(now_))) << dateText(week.start);
            expected.erase(week.start);
        }
        for (const auto& [start, week] : expected) ADD_FAILURE() << dateText(start) << " isn't on the device";
    }
    EXPECT_EQ(names, listed_);
}

// The weeks with free time in them. A slot is free where each minute of it is.
std::map<sys_days, FreeWeek> FreeTimeHistory::weeksOf(const Person& person) {
    std::map<sys_days, FreeWeek> weeks;
    if (person.id == 0) return weeks;
    const sys_days first = mondayOf(dayOf(now_));
    for (sys_days start = first; start < first + days(searchLength_ + 14); start += days(7)) {
        FreeWeek week;
        week.start = start;
        for (std::size_t slot = 0; slot < FreeWeek::slots; ++slot) {
            const std::int64_t from =
                zone_.toUtc(secondsOf(start) + static_cast<std::int64_t>(slot) * slotSeconds);
            bool free = true;
            for (std::int64_t at = from; free && at < from + slotSeconds; at += minute)
                free = isFree(person, at);
            week.free[slot] = free;
        }
        if (week.free.any()) weeks[start] = week;
    }
    return weeks;
}

// From 9:00 to 17:00 UTC on working days.
bool FreeTimeHistory::isFree(const Person& person, std::int64_t at) const {
    const std::int64_t today = now_ / day * day;
    const unsigned weekday = std::chrono::weekday(dayOf(at)).iso_encoding();
    if (at < today || at >= today + searchLength_ * day || weekday > 5) return false;
    if (at % day < 9 * 60 * minute || at % day >= 17 * 60 * minute) return false;
    for (const Busy& meeting : person.meetings) {
        if (at >= meeting.start && at < meeting.end) return false;
    }
    return true;
}

// In another HotSync, but for the checksums, which are written anew each time.
void FreeTimeHistory::expectNoRecordChanges() {
    const auto all = [this] {
        std::vector<HandheldRecord> records = database().records().all();
        std::erase_if(records, [](const HandheldRecord& each) { return each.category == 2; });
        return records;
    };
    const std::vector<HandheldRecord> before = all();
    hotSync();
    expectLog();
    EXPECT_EQ(all(), before);
}

} // namespace tsr::test
