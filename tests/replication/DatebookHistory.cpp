#include "replication/DatebookHistory.h"

#include <algorithm>

#include "interchange/RepeatRule.h"
#include "replication/deviceText.h"
#include "tessera/meetingOccurrences.h"

namespace tsr::test {

namespace {

using std::chrono::days;
using std::chrono::sys_days;
using std::chrono::year_month_day;
using Unit = RepeatRule::Unit;

const sys_days today = std::chrono::year(2002) / 2 / 6; // of the test's clock
constexpr std::uint16_t daysBefore = 30;
constexpr std::uint16_t daysAfter = 60;
const DateWindow window{today - days(daysBefore), today + days(daysAfter)};

std::string dateText(sys_days day) {
    const year_month_day date(day);
    const auto padded = [](unsigned number) { return (number < 10 ? "-0" : "-") + std::to_string(number); };
    return std::to_string(int{date.year()}) + padded(unsigned{date.month()}) + padded(unsigned{date.day()});
}

unsigned weekday(sys_days day) { return std::chrono::weekday(day).c_encoding(); }

// One of a meeting's days that leaves room for those that follow it.
sys_days randomDay(RandomWords& random) { return today + days(static_cast<int>(random.below(50)) - 20); }

std::int64_t randomStart(RandomWords& random) { return 9 * 60 + 15 * random.below(24); } // minute of the day

std::string clockText(std::int64_t minute) {
    const auto padded = [](std::int64_t number) { return (number < 10 ? "0" : "") + std::to_string(number); };
    return padded(minute / 60) + ':' + padded(minute % 60);
}

// Meetings as the handheld's user makes them.
FieldValues randomFields(RandomWords& random) {
    const sys_days day = randomDay(random);
    FieldValues values{{"description", toDeviceText(random.word() + random.serial())},
                       {"date", dateText(day)}};
    if (random.below(4) != 0) {
        const std::int64_t start = randomStart(random);
        values["start"] = clockText(start);
        values["end"] = clockText(start + 15 * random.below(8));
        if (random.flag()) values["alarm"] = random.flag() ? "15m" : "2h";
    }
    if (random.flag()) values["note"] = toDeviceText(random.word());
    return values;
}

void addRandomRepeat(RandomWords& random, FieldValues& values, sys_days day) {
    values["every"] = std::to_string(1 + random.below(3));
    if (random.flag()) values["until"] = dateText(day + days(10 + random.below(30)));
    switch (random.below(4)) {
    case 0: values["repeat"] = "daily"; break;
    case 1:
        values["repeat"] = "weekly";
        values["on"] = std::to_string(1u << weekday(day));
        break;
    case 2:
        values["repeat"] = "monthlyByDay";
        values["on"] = std::to_string((unsigned{year_month_day(day).day()} - 1) / 7 * 7 + weekday(day));
        break;
    default: values["repeat"] = "monthlyByDate";
    }
}

// And as they are made in Notes.
RepeatRule randomRule(RandomWords& random, sys_days day) {
    RepeatRule rule{.interval = 1 + random.below(3)};
    if (random.flag()) rule.until = day + days(10 + random.below(30));
    const unsigned date = unsigned{year_month_day(day).day()};
    switch (random.below(4)) {
    case 0: break;
    case 1:
        rule.unit = Unit::Week;
        rule.daysOfWeek = static_cast<std::uint8_t>(1u << weekday(day));
        break;
    case 2:
        rule.unit = Unit::MonthByDay;
        rule.daySpecs = {{(date - 1) / 7 + 1, weekday(day)}};
        break;
    default: rule.unit = Unit::MonthByDate; rule.dayNumbers = {date};
    }
    return rule;
}

Strings onlyIn(const Calendar& left, const Calendar& right) {
    Strings lines;
    std::set_difference(left.begin(), left.end(), right.begin(), right.end(), std::back_inserter(lines));
    return lines;
}

sys_days parsed(const std::string& text) {
    return year_month_day(std::chrono::year(std::stoi(text)),
                          std::chrono::month(static_cast<unsigned>(std::stoi(text.substr(5)))),
                          std::chrono::day(static_cast<unsigned>(std::stoi(text.substr(8)))));
}

} // namespace

void DatebookHistory::run(std::uint32_t seed) {
    begin(seed);
    RandomWords random(seed);
    for (int round = 0; round < 5 && !HasFailure(); ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        edit(random);
        replicate(random);
        expectAgreement();
        expectNothingMoves();
    }
}

void DatebookHistory::begin(std::uint32_t seed) {
    static constexpr const char* zones[] = {"UTC0",
                                            "CET-1CEST,M3.5.0,M10.5.0/3",
                                            "EST5EDT,M4.1.0,M10.5.0",
                                            "AEST-10AEDT,M10.5.0,M3.5.0/3",
                                            "IST-5:30",
                                            "NST3:30NDT,M4.1.0/0:01,M10.5.0/0:01"};
    zone_ = ZoneRule(zones[seed % std::size(zones)]);
    rule_ = seed % 2 == 0 ? 'C' : 'S';
    connectAfresh();
    office->setZone(zone_);
    configure(NextReplication::Normal);
}

void DatebookHistory::configure(NextReplication type) {
    ApplicationChoice choice;
    choice.type = type;
    choice.conflictRule = rule_;
    choice.daysBefore = daysBefore;
    choice.daysAfter = daysAfter;
    ConfigurationDatabase(handheld).setApplication(kind().application().configurationCategory, choice);
}

void DatebookHistory::edit(RandomWords& random) {
    added_.clear();
    for (std::uint32_t left = random.below(4); left > 0; --left) editDevice(random);
    for (std::uint32_t left = random.below(4); left > 0; --left) editNotes(random);
}

void DatebookHistory::replicate(RandomWords& random) {
    switch (random.below(10)) {
    case 0: sync(true); return;
    case 1: configure(NextReplication::Slow); break;
    case 2: configure(NextReplication::Fast); break;
    case 3: // what wasn't sent before a reset is lost, but for new records
        configure(NextReplication::Reset);
        sync();
        configure(NextReplication::Slow);
        break;
    case 4: // the device starts anew
        configure(NextReplication::Clear);
        hotSync();
        added_.clear();
        break;
    default: break;
    }
    sync();
}

void DatebookHistory::expectAgreement() {
    const Calendar inNotes = calendarInNotes(documents(), zone_, window);
    const Calendar onDevice = calendarOnDevice(database(), window);
    EXPECT_THAT(onlyIn(onDevice, inNotes), testing::IsEmpty()) << "on the device alone";
    EXPECT_THAT(onlyIn(inNotes, onDevice), testing::IsEmpty()) << "in Notes alone";
    EXPECT_EQ(std::adjacent_find(inNotes.begin(), inNotes.end()), inNotes.end()) << "there twice";
    for (const std::string& subject : added_) {
        const auto isOfIt = [&subject](const std::string& line) {
            return line.find(subject) != std::string::npos;
        };
        EXPECT_TRUE(std::any_of(inNotes.begin(), inNotes.end(), isOfIt)) << subject << " is lost";
    }
}

void DatebookHistory::editDevice(RandomWords& random) {
    std::vector<HandheldRecord> live;
    for (const HandheldRecord& record : database().records().all()) {
        if (!record.isGone()) live.push_back(record);
    }
    const std::uint32_t what = live.empty() ? 0 : random.below(6);
    if (what <= 1) {
        addOnDevice(random);
        return;
    }
    const HandheldRecord& record = live[random.below(static_cast<std::uint32_t>(live.size()))];
    FieldValues values = DatebookForm().read(record.data);
    added_.erase(fromDeviceText(values["description"]));
    if (what == 2) {
        database().deleteRecord(record.id);
        return;
    }
    editFields(random, values);
    database().editRecord(record.id, DatebookForm().write(values));
}

void DatebookHistory::addOnDevice(RandomWords& random) {
    FieldValues values = randomFields(random);
    const std::string subject = fromDeviceText(values["description"]);
    if (random.below(3) == 0) {
        const auto text = values.at("date");
        addRandomRepeat(random, values, parsed(text));
    }
    database().addRecord(DatebookForm().write(values), 0, random.flag() ? HandheldRecord::secret : 0);
    if (!values.contains("repeat")) added_.insert(subject); // a rule may have no day here
}

// A new text, a new time, or another day; of a meeting that repeats a day is taken out. An alarm and the
// private flag stay: a changed instance is sent without them, and the flag is none of the record's bytes.
void DatebookHistory::editFields(RandomWords& random, FieldValues& values) {
    if (random.flag()) values["description"] = toDeviceText(random.word() + random.serial());
    if (values.contains("start") && random.flag()) {
        const std::int64_t start = randomStart(random);
        values["start"] = clockText(start);
        values["end"] = clockText(start + 30);
    }
    if (!values.contains("repeat")) {
        if (random.flag()) values["date"] = dateText(randomDay(random));
    } else if (random.flag()) {
        std::string& except = values["except"];
        except += (except.empty() ? "" : ",") + values["date"];
    }
    values["note"] = toDeviceText(random.word() + random.serial());
}

void DatebookHistory::editNotes(RandomWords& random) {
    const std::vector<Document> documents = this->documents();
    const std::uint32_t what = documents.empty() ? 0 : random.below(6);
    if (what <= 1) {
        const Meeting meeting = randomMeeting(random);
        addToNotes(toProperties(meeting));
        if (!meeting.pattern) added_.insert(meeting.subject);
        return;
    }
    Document document = documents[random.below(static_cast<std::uint32_t>(documents.size()))];
    Meeting meeting = *toMeeting(document);
    added_.erase(meeting.subject);
    if (what == 2) {
        removeFromNotes(document);
        return;
    }
    if (meeting.pattern && what != 3) {
        editPattern(random, meeting);
    } else {
        const bool isPrivate = meeting.isPrivate;
        meeting = randomMeeting(random);
        meeting.isPrivate = isPrivate; // which alone is not seen by the device
        meeting.note = random.serial();
    }
    setMeeting(document.properties, meeting);
    replaceInNotes(document);
}

Meeting DatebookHistory::randomMeeting(RandomWords& random) {
    const sys_days day = randomDay(random);
    Meeting meeting;
    meeting.subject = random.word() + random.serial();
    meeting.allDay = random.below(4) == 0;
    meeting.minutes = meeting.allDay ? 1440 * (1 + random.below(3)) : 15 * random.below(8);
    const std::int64_t start = secondsOf(day) + 60 * (meeting.allDay ? 0 : randomStart(random));
    meeting.start = zone_.toUtc(start);
    if (random.flag()) meeting.note = random.word();
    if (!meeting.allDay && random.flag()) meeting.alarm = random.flag() ? 15u : 120u;
    meeting.isPrivate = random.flag();
    if (random.below(3) == 0) {
        meeting.pattern = MeetingPattern{.rule = randomRule(random, day), .start = start};
        if (random.flag()) editPattern(random, meeting);
    }
    return meeting;
}

// A day of the pattern is deleted, or moved and changed.
void DatebookHistory::editPattern(RandomWords& random, Meeting& meeting) {
    MeetingPattern& pattern = *meeting.pattern;
    const sys_days first = dayOf(pattern.start);
    const auto found = occurrences(pattern.rule, first, first, window.last - days(10), 20);
    if (found.empty()) return;
    const sys_days day = found[random.below(static_cast<std::uint32_t>(found.size()))];
    std::erase_if(pattern.exceptions, [day](const auto& each) { return each.patternDate == day; });
    // The device has one record a day beside the master: a changed day takes the place of a further day
    // of another instance.
    const bool takesSeveralDays = meeting.allDay && meeting.minutes > 1440;
    if (takesSeveralDays || random.flag()) {
        pattern.deletions.insert(day);
        return;
    }
    pattern.deletions.erase(day);
    const sys_days moved = day + days(random.below(3));
    for (const EventException& other : pattern.exceptions) {
        if (dayOf(other.start) == moved) return; // the device would drop one of the two
    }
    EventException exception{.patternDate = day, .start = secondsOf(moved) + 60 * randomStart(random)};
    exception.subject = random.word() + random.serial();
    exception.minutes = 30; // a whole day of the pattern would make it end with another
    exception.allDay = false;
    pattern.exceptions.push_back(exception);
    std::sort(pattern.exceptions.begin(), pattern.exceptions.end(),
              [](const auto& left, const auto& right) { return left.patternDate < right.patternDate; });
}

} // namespace tsr::test
