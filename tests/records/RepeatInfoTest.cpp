#include "records/RepeatInfo.h"

#include <functional>

#include "records/RepeatsDailyInfo.h"
#include "records/RepeatsMonthlyByDateInfo.h"
#include "records/RepeatsMonthlyByDayInfo.h"
#include "records/RepeatsNeverInfo.h"
#include "records/RepeatsWeeklyInfo.h"
#include "support/errors.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

using test::textRaisedBy;

constexpr char lastMay[] = "211121280"; // 2002-05-31: 11,838 days after 1970, 194,074,560 + 11,838 * 1,440

CountedPtr<RepeatInfo> fromItem(const NotesItem& item) { return RepeatInfo::fromItem(item, TimeZone()); }

NotesItem itemOf(const RepeatInfo& rule) {
    NotesItem item;
    rule.addTo(item, TimeZone());
    return item;
}

// `item` with what every rule needs.
NotesItem withBasics(const char* recurs, NotesItem item = {}) {
    item.merge(NotesItem{{"Recurs", {recurs}}, {"Interval", {"2"}}, {"PatternEnd", {"Forever"}}});
    return item;
}

bool isInternalError(const std::string& text) {
    return text.starts_with("Internal error occured at line ") && text.ends_with(" in RepeatInfo.");
}

TEST(RepeatInfo, GoesThroughItsPropertiesBothWays) {
    const struct {
        NotesItem item;
        std::uint8_t deviceType;
    } rows[] = {
        {{}, 0},
        {{{"Interval", {"1"}}, {"PatternEnd", {"Forever"}}, {"Recurs", {"Day"}}}, 1},
        {{{"Interval", {"0"}}, {"PatternEnd", {lastMay}}, {"Recurs", {"Day"}}}, 1}, // taken as it is
        {{{"DaysOfWeek", {"20"}},
          {"Interval", {"4294967295"}},
          {"PatternEnd", {lastMay}},
          {"Recurs", {"Week"}}},
         2},
        {{{"Interval", {"3"}}, {"Nth.1", {"2.4"}}, {"PatternEnd", {"Forever"}}, {"Recurs", {"MonthNth"}}}, 3},
        {{{"Interval", {"3"}},
          {"Nth.1", {"0.0"}}, // no such instance, but it passes
          {"Nth.2", {"5.6"}},
          {"PatternEnd", {"Forever"}},
          {"Recurs", {"MonthNth"}}},
         3},
        {{{"DayInMonth.1", {"31"}}, {"Interval", {"1"}}, {"PatternEnd", {lastMay}}, {"Recurs", {"Month"}}},
         4},
        {{{"DayInMonth.1", {"31"}},
          {"DayInMonth.2", {"1"}},
          {"Interval", {"1"}},
          {"PatternEnd", {lastMay}},
          {"Recurs", {"Month"}}},
         4},
    };
    for (const auto& row : rows) {
        const CountedPtr<RepeatInfo> rule = fromItem(row.item);
        EXPECT_EQ(rule->deviceType(), row.deviceType);
        EXPECT_EQ(rule->repeats(), row.deviceType != 0);
        EXPECT_EQ(itemOf(*rule), row.item);
        EXPECT_EQ(itemOf(*rule->clone()), row.item);
    }
}

TEST(RepeatInfo, DoesNotRepeatWithoutAWord) {
    for (const NotesItem& item : {NotesItem{}, NotesItem{{"Recurs", {""}}}, NotesItem{{"Recurs", {}}}}) {
        const CountedPtr<RepeatInfo> rule = fromItem(item);
        EXPECT_FALSE(rule->repeats());
        EXPECT_TRUE(rule->fitsDevice());
        EXPECT_EQ(rule->deviceType(), 0);
        EXPECT_EQ(itemOf(*rule), NotesItem{});
    }
}

TEST(RepeatInfo, ComparesItsWordsExactly) {
    for (const char* word : {"Year", "day", "Day ", "Monthnth", "Days"}) {
        EXPECT_EQ(textRaisedBy([&] { fromItem(withBasics(word)); }),
                  std::string("Unknown repeat type '") + word + "'.");
    }
}

TEST(RepeatInfo, TellsTheEndAsADayInUtc) {
    const std::pair<const char*, Date> rows[] = {
        {"194074560", Date(1970, 1, 1)},   {lastMay, Date(2002, 5, 31)},
        {"211122719", Date(2002, 5, 31)},  // the last minute of that day
        {"211122720", Date(2002, 6, 1)},   // and the next
        {"104663520", Date(1800, 1, 1)},   // 72,683 days after 1601
        {"4294967295", Date(9767, 2, 16)}, // 2,982,616 days and a little after 1601
    };
    for (const auto& [end, date] : rows) {
        SCOPED_TRACE(end);
        const CountedPtr<RepeatInfo> rule =
            fromItem({{"Recurs", {"Day"}}, {"Interval", {"1"}}, {"PatternEnd", {end}}});
        EXPECT_FALSE(rule->isForever());
        EXPECT_EQ(rule->endDate(), date);
    }
}

TEST(RepeatInfo, TheZoneHasNoEffect) {
    const NotesItem item{{"Recurs", {"Day"}}, {"Interval", {"1"}}, {"PatternEnd", {lastMay}}};
    const CountedPtr<RepeatInfo> rule = RepeatInfo::fromItem(item, TimeZone(-43200));
    EXPECT_EQ(rule->endDate(), Date(2002, 5, 31));
    NotesItem sent;
    rule->addTo(sent, TimeZone(43200));
    EXPECT_EQ(sent, item);
}

TEST(RepeatInfo, RefusesPropertiesThatMakeNoRule) {
    const NotesItem noEnd{{"Recurs", {"Day"}}, {"Interval", {"1"}}};
    const NotesItem emptyEnd{{"Recurs", {"Day"}}, {"Interval", {"1"}}, {"PatternEnd", {""}}};
    const NotesItem badEnd{{"Recurs", {"Day"}}, {"Interval", {"1"}}, {"PatternEnd", {"forever"}}};
    const NotesItem oldEnd{{"Recurs", {"Day"}}, {"Interval", {"1"}}, {"PatternEnd", {"104663519"}}};
    const NotesItem noInterval{{"Recurs", {"Day"}}, {"PatternEnd", {"Forever"}}};
    const NotesItem badInterval{{"Recurs", {"Week"}}, {"Interval", {"-1"}}};
    const char invalidDay[] =
        "The day number '%' for the repeats monthly by date event is either invalid or has already been "
        "encountered.";
    const auto dayText = [&](const char* day) {
        std::string text = invalidDay;
        return text.replace(text.find('%'), 1, day);
    };
    const auto specText = [](const char* spec) {
        return std::string("The day specification '") + spec
             + "' for the repeats monthly by day event is invalid.";
    };
    const std::pair<NotesItem, std::string> rows[] = {
        {noEnd, "No pattern end date was found."},
        {emptyEnd, "No pattern end date was found."},
        {badEnd, "Cannot convert string 'forever' to unsigned."},
        {oldEnd, "Cannot perform conversion; integer value would have lost it's sign."}, // before 1800
        {noInterval, "Cannot convert string '' to unsigned."},
        {badInterval, "Cannot convert string '-1' to unsigned."},
        {withBasics("Week"), "Cannot convert string '' to unsigned."},
        {withBasics("Week", {{"DaysOfWeek", {"Mon"}}}), "Cannot convert string 'Mon' to unsigned."},
        {withBasics("Month"), "No day number was found in the repeats monthly by date event."},
        {withBasics("Month", {{"DayInMonth.2", {"15"}}}),
         "No day number was found in the repeats monthly by date event."}, // the first is not there
        {withBasics("Month", {{"DayInMonth.1", {"15"}}, {"DayInMonth.2", {"15"}}}), dayText("15")},
        {withBasics("Month", {{"DayInMonth.1", {"15"}}, {"DayInMonth.2", {"015"}}}), dayText("15")},
        {withBasics("Month", {{"DayInMonth.1", {"0"}}}), dayText("0")},
        {withBasics("Month", {{"DayInMonth.1", {"32"}}}), dayText("32")},
        {withBasics("Month", {{"DayInMonth.1", {"x"}}}), "Cannot convert string 'x' to unsigned."},
        {withBasics("Month", {{"DayInMonth.1", {}}}), "Cannot convert string '' to unsigned."},
        {withBasics("MonthNth"), "No day specs were found in the repeats monthly by day event."},
        {withBasics("MonthNth", {{"Nth.2", {"1.1"}}}),
         "No day specs were found in the repeats monthly by day event."},
        {withBasics("MonthNth", {{"Nth.1", {"5,2"}}}), specText("5,2")},
        {withBasics("MonthNth", {{"Nth.1", {"6.1"}}}), specText("6.1")},
        {withBasics("MonthNth", {{"Nth.1", {"1.7"}}}), specText("1.7")},
        {withBasics("MonthNth", {{"Nth.1", {""}}}), specText("")},
        {withBasics("MonthNth", {{"Nth.1", {}}}), specText("")},
        {withBasics("MonthNth", {{"Nth.1", {"1."}}}), specText("1.")},
        {withBasics("MonthNth", {{"Nth.1", {"1"}}}), specText("1")},
        {withBasics("MonthNth", {{"Nth.1", {".1"}}}), specText(".1")},
        {withBasics("MonthNth", {{"Nth.1", {"-1.1"}}}), specText("-1.1")}, // 4294967295 to a stream
        {withBasics("MonthNth", {{"Nth.1", {"1.-1"}}}), specText("1.-1")},
        {withBasics("MonthNth", {{"Nth.1", {"4294967296.1"}}}), specText("4294967296.1")},
        {withBasics("MonthNth", {{"Nth.1", {"1.1"}}, {"Nth.2", {"bad"}}}), specText("bad")},
    };
    for (const auto& [item, text] : rows) {
        EXPECT_EQ(textRaisedBy([&] { fromItem(item); }), text);
    }
}

TEST(RepeatInfo, RefusesToSendAnEndThatMinutesCannotTell) {
    RepeatsDailyInfo rule;
    rule.setForever(false);
    EXPECT_EQ(itemOf(rule)["PatternEnd"], std::vector<std::string>{"194074560"}); // 1970-01-01 at first
    rule.setEndDate(Date(1969, 12, 31));
    EXPECT_EQ(textRaisedBy([&] { itemOf(rule); }),
              "The time stamp value represents a time before the start of UTC.");
    rule.setEndDate(Date(2106, 2, 7)); // 4,294,944,000 seconds after 1970
    EXPECT_EQ(itemOf(rule)["PatternEnd"], std::vector<std::string>{"265656960"});
    rule.setEndDate(Date(2106, 2, 8)); // past 32 bits
    EXPECT_EQ(textRaisedBy([&] { itemOf(rule); }),
              "Cannot perform conversion; integer value would have been truncated.");
    rule.setForever(true);
    EXPECT_EQ(itemOf(rule)["PatternEnd"], std::vector<std::string>{"Forever"});
}

TEST(RepeatInfo, MakesTheRuleOfADeviceType) {
    const Date start(2002, 3, 31);
    EXPECT_FALSE(RepeatInfo::forDeviceType(0, start)->repeats());
    for (std::uint32_t type = 1; type <= 4; ++type) {
        const CountedPtr<RepeatInfo> rule = RepeatInfo::forDeviceType(type, start);
        EXPECT_EQ(rule->deviceType(), type);
        EXPECT_TRUE(rule->repeats());
        EXPECT_TRUE(rule->isForever());
        EXPECT_EQ(rule->interval(), 1u);
        EXPECT_EQ(rule->endDate(), Date(1970, 1, 1));
        EXPECT_EQ(rule->fitsDevice(), type != 3); // by day: not before it has a day
    }
    EXPECT_EQ(RepeatInfo::forDeviceType(2, start)->daysOfWeek(), 0);
    EXPECT_EQ(RepeatInfo::forDeviceType(4, start)->dayNumber(0), 31u);
    EXPECT_EQ(textRaisedBy([&] { RepeatInfo::forDeviceType(3, start)->daySpec(0); }),
              "Invalid day spec index (0) for the repeats monthly by day event.");
    for (const std::uint32_t type : {5u, 6u, 255u}) {
        EXPECT_EQ(textRaisedBy([&] { RepeatInfo::forDeviceType(type, start); }),
                  "Unknown repeat type (" + std::to_string(type) + ").");
    }
}

TEST(RepeatInfo, RefusesWhatAClassDoesNotHave) {
    RepeatsNeverInfo never;
    RepeatsDailyInfo daily;
    RepeatsWeeklyInfo weekly;
    RepeatsMonthlyByDateInfo byDate(1);
    RepeatsMonthlyByDayInfo byDay;
    const auto getDaySpec = [](RepeatInfo& rule) { rule.daySpec(0); };
    const auto addDaySpec = [](RepeatInfo& rule) { rule.addDaySpec(1, 1); };
    const auto getDayNumber = [](RepeatInfo& rule) { rule.dayNumber(0); };
    const auto setDays = [](RepeatInfo& rule) { rule.setDaysOfWeek(1); };
    const auto getDays = [](RepeatInfo& rule) { rule.daysOfWeek(); };
    const std::pair<RepeatInfo*, std::vector<std::function<void(RepeatInfo&)>>> rows[] = {
        {&never,
         {getDaySpec, addDaySpec, getDayNumber, setDays, getDays,
          [](RepeatInfo& rule) { rule.setEndDate(Date()); }, [](RepeatInfo& rule) { rule.endDate(); },
          [](RepeatInfo& rule) { rule.setForever(true); }, [](RepeatInfo& rule) { rule.isForever(); },
          [](RepeatInfo& rule) { rule.setInterval(1); }, [](RepeatInfo& rule) { rule.interval(); }}},
        {&daily, {getDaySpec, addDaySpec, getDayNumber, setDays, getDays}},
        {&weekly, {getDaySpec, addDaySpec, getDayNumber}},
        {&byDate, {getDaySpec, addDaySpec, setDays, getDays}},
        {&byDay, {getDayNumber, setDays, getDays}},
    };
    for (const auto& [rule, operations] : rows) {
        for (std::size_t i = 0; i < operations.size(); ++i) {
            SCOPED_TRACE(i);
            EXPECT_TRUE(isInternalError(textRaisedBy([&] { operations[i](*rule); })));
        }
    }
}

TEST(RepeatInfo, ACloneSharesNothing) {
    for (std::uint32_t type = 1; type <= 4; ++type) {
        const CountedPtr<RepeatInfo> rule = RepeatInfo::forDeviceType(type, Date(2002, 5, 10));
        const CountedPtr<RepeatInfo> copy = rule->clone();
        copy->setInterval(7);
        copy->setForever(false);
        copy->setEndDate(Date(2003, 1, 1));
        if (type == 2) copy->setDaysOfWeek(3);
        if (type == 3) copy->addDaySpec(1, 1);
        EXPECT_EQ(rule->interval(), 1u);
        EXPECT_TRUE(rule->isForever());
        EXPECT_EQ(rule->endDate(), Date(1970, 1, 1));
        if (type == 2) {
            EXPECT_EQ(rule->daysOfWeek(), 0);
        }
        if (type == 3) {
            EXPECT_FALSE(rule->fitsDevice());
        }
        EXPECT_EQ(copy->deviceType(), type);
    }
    EXPECT_FALSE(RepeatsNeverInfo().clone()->repeats());
}

TEST(RepeatsWeeklyInfo, TakesTheLowByteOfItsDays) {
    const std::pair<const char*, std::uint8_t> rows[] = {{"0", 0}, {"127", 127}, {"255", 255}, {"257", 1}};
    for (const auto& [text, mask] : rows) {
        EXPECT_EQ(fromItem(withBasics("Week", {{"DaysOfWeek", {text}}}))->daysOfWeek(), mask);
    }
}

TEST(RepeatsMonthlyByDateInfo, ReadsUpToTheFirstGapAndNoMoreThanAMonthHasDays) {
    NotesItem item = withBasics("Month");
    for (std::uint32_t day = 1; day <= 32; ++day) {
        item["DayInMonth." + std::to_string(day)] = {std::to_string(day)}; // the 32nd would be refused
    }
    const CountedPtr<RepeatInfo> every = fromItem(item);
    EXPECT_EQ(every->dayNumber(30), 31u);
    EXPECT_FALSE(every->fitsDevice());
    EXPECT_FALSE(itemOf(*every).count("DayInMonth.32"));

    item.erase("DayInMonth.2");
    const CountedPtr<RepeatInfo> first = fromItem(item);
    EXPECT_TRUE(first->fitsDevice());
    EXPECT_EQ(first->dayNumber(0), 1u);
}

TEST(RepeatsMonthlyByDayInfo, ReadsItsDaysAsAStreamDoes) {
    const struct {
        const char* text;
        DaySpec spec;
    } rows[] = {
        {"4.2", {4, 2}},   {"0.0", {0, 0}},
        {"5.6", {5, 6}},   {" 4 . 2", {4, 2}}, // blanks before each piece
        {"4.2.9", {4, 2}},                     // and anything behind the last
        {"+4.2x", {4, 2}}, {"004.02", {4, 2}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        EXPECT_EQ(fromItem(withBasics("MonthNth", {{"Nth.1", {row.text}}}))->daySpec(0), row.spec);
    }
}

TEST(RepeatsMonthlyByDayInfo, TakesTheFourthAndTheLastOfAWeekdayForOne) {
    const struct {
        std::vector<const char*> in;
        std::vector<DaySpec> out;
    } rows[] = {
        {{"4.2", "5.2"}, {{5, 2}}},
        {{"5.2", "4.2"}, {{5, 2}}},
        {{"4.2", "4.2", "5.2"}, {{5, 2}}},
        {{"4.2", "5.3"}, {{4, 2}, {5, 3}}}, // of another weekday
        {{"4.2", "4.3", "5.3", "5.2", "1.2"}, {{5, 3}, {5, 2}, {1, 2}}},
        {{"5.2", "5.2"}, {{5, 2}, {5, 2}}},
        {{"4.2", "4.2"}, {{4, 2}, {4, 2}}},
    };
    for (const auto& row : rows) {
        NotesItem item = withBasics("MonthNth");
        for (std::size_t i = 0; i < row.in.size(); ++i) item["Nth." + std::to_string(i + 1)] = {row.in[i]};
        const CountedPtr<RepeatInfo> rule = fromItem(item);
        for (std::size_t i = 0; i < row.out.size(); ++i) EXPECT_EQ(rule->daySpec(i), row.out[i]);
        EXPECT_EQ(textRaisedBy([&] { rule->daySpec(row.out.size()); }),
                  "Invalid day spec index (" + std::to_string(row.out.size())
                      + ") for the repeats monthly by day event.");
        EXPECT_EQ(rule->fitsDevice(), row.out.size() == 1);
    }
}

TEST(RepeatsMonthlyByDayInfo, ReadsNoMoreThanThirtyOne) {
    NotesItem item = withBasics("MonthNth");
    for (std::uint32_t n = 1; n <= 31; ++n) item["Nth." + std::to_string(n)] = {"1.1"};
    item["Nth.32"] = {"bad"};
    EXPECT_EQ(fromItem(item)->daySpec(30), (DaySpec{1, 1}));
}

TEST(RepeatsMonthlyByDayInfo, AppendsDays) {
    RepeatsMonthlyByDayInfo rule;
    rule.addDaySpec(2, 4);
    EXPECT_TRUE(rule.fitsDevice());
    rule.addDaySpec(37, 3); // what a byte of the device can say
    EXPECT_FALSE(rule.fitsDevice());
    EXPECT_EQ(itemOf(rule)["Nth.2"], std::vector<std::string>{"37.3"});
}

} // namespace
} // namespace tsr
