// Random meetings through every form: properties, device records, bytes, and back. The seeds are fixed.

#include <random>

#include "foundation/Error.h"
#include "foundation/hexadecimal.h"
#include "foundation/numbers.h"
#include "records/RepeatInfo.h"
#include "records/datebookMeeting.h"
#include "support/meetingZones.h"
#include "support/recordBytes.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

using test::bytes;
using test::dataOf;
using test::fill;

class Dice {
public:
    explicit Dice(std::uint32_t seed) : engine_(seed) {}

    std::uint32_t upTo(std::uint32_t most) { return static_cast<std::uint32_t>(engine_()) % (most + 1); }
    bool once(std::uint32_t in) { return upTo(in - 1) == 0; }
    std::string number(std::uint32_t most) { return std::to_string(upTo(most)); }
    template <typename List>
    auto& oneOf(List& list) {
        return list[upTo(static_cast<std::uint32_t>(std::size(list)) - 1)];
    }

private:
    std::mt19937 engine_;
};

TimeZone anyZone(Dice& dice) {
    const TimeZone zones[] = {TimeZone(),        test::twoHoursEast(),      test::halfPastFiveEast(),
                              test::northEast(), test::halfPastThreeWest(), test::northWest(),
                              test::southEast(), test::southWest(),         test::halfHourSouth()};
    return dice.oneOf(zones);
}

constexpr std::uint32_t epoch = 206172000;          // 1993-01-01, 143,175 days after 1601
constexpr std::uint32_t firstMinute = epoch + 1440; // in no zone before 1993
constexpr std::uint32_t minutesTo2030 = 19460160;   // 13,514 days

std::string anyText(Dice& dice) {
    std::string text;
    for (std::uint32_t length = dice.upTo(12); length != 0; --length) {
        const char character = static_cast<char>(1 + dice.upTo(254)); // a device's text has no NUL
        text += character == '\r' ? '\n' : character;                 // nor stays a CR on the way
    }
    return text;
}

std::string hexOf(const std::string& text) {
    return binaryToHex(std::vector<std::uint8_t>(text.begin(), text.end()));
}

// A rule that a device record can hold.
void addRule(Dice& dice, NotesItem& item) {
    static const char* const words[] = {"Day", "Week", "Month", "MonthNth"};
    const std::string word = dice.oneOf(words);
    item["Recurs"] = {word};
    item["Interval"] = {dice.number(255)};
    item["PatternEnd"] = {
        dice.once(2) ? "Forever" : std::to_string(firstMinute + dice.upTo(minutesTo2030) / 1440 * 1440)};
    if (word == "Week") item["DaysOfWeek"] = {dice.number(255)};
    if (word == "Month") item["DayInMonth.1"] = {std::to_string(1 + dice.upTo(27))}; // every month has it
    if (word == "MonthNth") item["Nth.1"] = {std::to_string(1 + dice.upTo(4)) + "." + dice.number(6)};
}

// As it arrives, without a duration.
NotesItem anyMeeting(Dice& dice) {
    NotesItem item;
    const std::uint32_t minute = firstMinute + dice.upTo(minutesTo2030);
    item["0037001F"] = {anyText(dice)};
    item["00170041"] = {hexOf(anyText(dice))};
    item["420D0040"] = {std::to_string((minute - epoch) * 60)};
    item["42130003"] = {"0"};
    item["42150003"] = {dice.number(1)};
    item["45030002"] = {dice.number(1)};
    item["45010003"] = {dice.number(5970)}; // days grow each time that they are rounded
    item["00040002"] = {dice.number(1)};
    if (dice.once(2)) return item;

    addRule(dice, item);
    item["PatternStartDate"] = {std::to_string(minute / 1440 * 1440 + dice.upTo(1439))};
    const std::uint32_t deletions = dice.upTo(3);
    item["DeletionCount"] = {std::to_string(deletions)};
    for (std::uint32_t i = 0; i < deletions; ++i) {
        item["Deletion." + std::to_string(i) + ".OriginalDate"] = {
            std::to_string(firstMinute + dice.upTo(minutesTo2030))};
    }
    return item;
}

// The device has no end on another day.
void endInsideTheDay(Dice& dice, NotesItem& item, const TimeZone& zone) {
    const NotesDatebookRecord meeting(item, zone);
    const std::uint32_t minute = meeting.time.hour() * 60 + meeting.time.minute();
    item["42130003"] = {meeting.allDay ? dice.number(1440) : dice.number(1439 - minute)};
}

struct OnDevice {
    std::vector<std::uint8_t> data;
    std::uint8_t attributes;

    bool operator==(const OnDevice&) const = default;
};

OnDevice toDevice(const NotesItem& item, const TimeZone& zone) {
    bool spread = true;
    const PalmRecordGroup group = toPalmGroup(NotesDatebookRecord(item, zone), spread);
    EXPECT_FALSE(spread);
    EXPECT_EQ(group.size(), 1u);
    PalmRecordBuffer buffer;
    const std::uint16_t crc = group.get(0)->write(buffer);
    EXPECT_EQ(crc, buffer.crc(0));
    return {dataOf(buffer), buffer.attributes()};
}

NotesItem toNotes(const OnDevice& device, const TimeZone& zone) {
    PalmRecordBuffer buffer;
    fill(buffer, device.data);
    buffer.setAttributes(device.attributes);
    PalmRecordGroup group;
    group.set(0, makeCounted<PalmDatebookRecord>(buffer, false));
    NotesItem item;
    toNotesMeeting(group)->addTo(item, zone);
    return item;
}

// What is sent says nothing of privacy where there is none, and what arrives without it is private.
NotesItem asItArrives(NotesItem item) {
    item.merge(NotesItem{{"00040002", {"0"}}});
    return item;
}

std::uint32_t secondsOf(const NotesItem& item) { return parseUnsigned(firstValue(item, "420D0040")); }

TEST(DatebookRoundTrip, EveryMeetingComesBackAsItWent) {
    Dice dice(20020510);
    for (int round = 0; round < 5000; ++round) {
        SCOPED_TRACE(round);
        const TimeZone zone = anyZone(dice);
        NotesItem item = anyMeeting(dice);
        endInsideTheDay(dice, item, zone);
        const OnDevice device = toDevice(item, zone);
        const NotesItem back = toNotes(device, zone);

        EXPECT_EQ(back.at("0037001F"), item.at("0037001F"));
        EXPECT_EQ(back.at("00170041"), item.at("00170041"));
        EXPECT_EQ(back.at("42150003"), item.at("42150003"));
        EXPECT_EQ(back.at("45030002"), item.at("45030002"));
        EXPECT_EQ(back.count("00040002") == 1, firstValue(item, "00040002") == "1");
        for (const char* name : {"Recurs", "Interval", "DaysOfWeek", "PatternEnd", "DayInMonth.1"}) {
            EXPECT_EQ(firstValue(back, name), firstValue(item, name)) << name;
        }
        if (firstValue(item, "42150003") == "0") {
            EXPECT_EQ(back.at("42130003"), item.at("42130003"));
        }

        if (firstValue(item, "Recurs").empty() && firstValue(item, "42150003") == "0") {
            const std::uint32_t earlier = secondsOf(item) - secondsOf(back);
            EXPECT_TRUE(earlier == 0 || earlier == 1800 || earlier == 3600) << earlier; // a doubled hour
        }

        // The second time nothing changes any more: alarms are rounded, days moved, doubled hours decided.
        const OnDevice again = toDevice(asItArrives(back), zone);
        EXPECT_EQ(again.attributes, device.attributes);
        const NotesItem twice = toNotes(again, zone);
        EXPECT_EQ(toDevice(asItArrives(twice), zone), again);
        EXPECT_EQ(toNotes(again, zone), twice);
    }
}

TEST(DatebookRoundTrip, EveryRuleGoesThroughTheDevice) {
    Dice dice(7);
    for (int round = 0; round < 2000; ++round) {
        SCOPED_TRACE(round);
        NotesItem item;
        addRule(dice, item);
        const CountedPtr<RepeatInfo> rule = RepeatInfo::fromItem(item, TimeZone());
        PalmDatebookRecord record;
        record.setDate(Date(2002, 5, 1 + dice.upTo(30)));
        record.setRepeat(*rule);
        PalmRecordBuffer buffer;
        record.write(buffer);
        const PalmDatebookRecord read(buffer, false);
        NotesItem back;
        read.repeat().addTo(back, TimeZone());
        EXPECT_EQ(back, item);
    }
}

// Whatever the bytes are, a record comes of them that can be written, or an error.
void readHostile(const std::vector<std::uint8_t>& data) {
    PalmRecordBuffer buffer;
    fill(buffer, data);
    try {
        PalmRecordGroup group;
        group.set(0, makeCounted<PalmDatebookRecord>(buffer, false));
        PalmRecordBuffer other;
        group.get(0)->write(other);
        NotesItem item;
        toNotesMeeting(group)->addTo(item, test::southWest());
    } catch (const Error&) {
    } catch (const char* text) {
        EXPECT_STREQ(text, "?? throw something ??");
    }
}

TEST(DatebookRoundTrip, HostileBytesDoNoHarm) {
    Dice dice(11);
    const std::vector<std::uint8_t> good = bytes("09 00 0A 1E C4 AA 7C 00 05 02 02 00 C5 9F 02 14 00 00 "
                                                 "00 02 C4 B8 C4 C6 4C 75 6E 63 68 00 41 42 00");
    for (int round = 0; round < 20000; ++round) {
        std::vector<std::uint8_t> data = good;
        for (std::uint32_t changes = 1 + dice.upTo(3); changes != 0; --changes) {
            dice.oneOf(data) = static_cast<std::uint8_t>(dice.upTo(255));
        }
        data.resize(dice.once(3) ? dice.upTo(33) : data.size());
        readHostile(data);
    }
}

TEST(DatebookRoundTrip, HostilePropertiesDoNoHarm) {
    Dice dice(13);
    static const char* const names[] = {"0037001F",
                                        "00170041",
                                        "42150003",
                                        "42130003",
                                        "420D0040",
                                        "45030002",
                                        "45010003",
                                        "00040002",
                                        "Recurs",
                                        "Interval",
                                        "PatternEnd",
                                        "DaysOfWeek",
                                        "DayInMonth.1",
                                        "DayInMonth.2",
                                        "Nth.1",
                                        "Nth.2",
                                        "InstanceCount",
                                        "Instance.0.Date",
                                        "DeletionCount",
                                        "Deletion.0.OriginalDate",
                                        "ExceptionCount",
                                        "Exception.1.PatternDate",
                                        "Exception.1.Date",
                                        "Exception.1.Duration",
                                        "Exception.1.AllDay",
                                        "PatternStartDate"};
    static const char* const values[] = {
        "",    "0",          "1",          "2",         "5.6",       "-1",       "255",
        "256", "4294967295", "4294967296", "211091040", "104663519", "94370401", "Forever",
        "Day", "Week",       "Month",      "MonthNth",  "zz",        "00",       "1440"};
    for (int round = 0; round < 20000; ++round) {
        NotesItem item{{"420D0040", {"295138800"}}, {"42130003", {"60"}},
                       {"Recurs", {"Day"}},         {"Interval", {"1"}},
                       {"PatternEnd", {"Forever"}}, {"PatternStartDate", {"211091040"}},
                       {"InstanceCount", {"1"}},    {"Instance.0.Date", {"211091040"}},
                       {"DeletionCount", {"1"}},    {"Deletion.0.OriginalDate", {"211091040"}},
                       {"ExceptionCount", {"1"}},   {"Exception.1.PatternDate", {"211091040"}}};
        for (std::uint32_t changes = 1 + dice.upTo(3); changes != 0; --changes) {
            item[dice.oneOf(names)] = {dice.oneOf(values)};
        }
        try {
            bool spread = false;
            const PalmRecordGroup group = toPalmGroup(NotesDatebookRecord(item, test::northWest()), spread);
            EXPECT_LE(group.size(), 65537u); // the days, a master and a changed instance
            PalmRecordBuffer buffer;
            group.get(0)->write(buffer);
        } catch (const Error&) {
        }
    }
}

} // namespace
} // namespace tsr
