#include "tessera/commands/userTexts.h"

#include <filesystem>
#include <fstream>
#include <utility>

#include <gtest/gtest.h>

#include "tessera/commands/ArgumentError.h"

namespace tsr {
namespace {

TEST(Days, GoBothWays) {
    const std::pair<const char*, std::array<bool, 7>> rows[] = {
        {"mon-fri", {true, true, true, true, true, false, false}},
        {"mon", {true, false, false, false, false, false, false}},
        {"mon,wed-fri,sun", {true, false, true, true, true, false, true}},
        {"mon-sun", {true, true, true, true, true, true, true}},
    };
    for (const auto& [text, days] : rows) {
        WorkingHours hours;
        setDays(hours, text);
        EXPECT_EQ(hours.days, days) << text;
        EXPECT_EQ(daysText(hours), text);
    }
}

TEST(Days, MayRunOverTheEndOfTheWeek) {
    WorkingHours hours;
    setDays(hours, "sat-mon");
    EXPECT_EQ(daysText(hours), "mon,sat-sun");
}

TEST(Days, AreRefused) {
    for (const char* text : {"", "monday", "mon,,tue", "mon-", "-mon", "mon;tue", "Mon"}) {
        WorkingHours hours;
        EXPECT_THROW(setDays(hours, text), ArgumentError) << text;
        EXPECT_EQ(daysText(hours), "mon-fri");
    }
}

TEST(Hours, GoBothWays) {
    WorkingHours hours;
    setHours(hours, "00:00-24:00");
    EXPECT_EQ(hours.startMinute, 0);
    EXPECT_EQ(hours.endMinute, 1440);
    EXPECT_EQ(hoursText(hours), "00:00-24:00");
}

TEST(Hours, AreRefused) {
    for (const char* text : {"", "09:00", "17:00-09:00", "09:00-09:00", "9-17", "09:00-25:00"}) {
        WorkingHours hours;
        EXPECT_THROW(setHours(hours, text), ArgumentError) << text;
    }
}

TEST(Zone, IsARule) {
    User user;
    setZone(user, "EST5EDT,M3.2.0,M11.1.0");
    EXPECT_EQ(user.zoneName, "EST5EDT,M3.2.0,M11.1.0");
    EXPECT_EQ(user.zone.text(), user.zoneName);
}

class ZoneNameTest : public ::testing::Test {
protected:
    // A database of time zones with one zone in it: a compiled file has its rule between its last two line
    // ends.
    void SetUp() override {
        std::filesystem::create_directories(folder + "/Europe");
        std::ofstream(folder + "/Europe/Berlin", std::ios::binary)
            << "TZif2" << std::string(39, '\0') << "TZif2" << std::string(39, '\0')
            << "\nCET-1CEST,M3.5.0,M10.5.0/3\n";
        ::setenv("TZDIR", folder.c_str(), 1);
    }
    void TearDown() override {
        ::unsetenv("TZDIR");
        std::filesystem::remove_all(folder);
    }

    const std::string folder = ::testing::TempDir() + "tesseraZones."
                             + ::testing::UnitTest::GetInstance()->current_test_info()->name();
};

TEST_F(ZoneNameTest, GivesTheRuleOfItsFile) {
    User user;
    setZone(user, "Europe/Berlin");
    EXPECT_EQ(user.zoneName, "Europe/Berlin");
    EXPECT_EQ(user.zone.text(), "CET-1CEST,M3.5.0,M10.5.0/3");
}

TEST_F(ZoneNameTest, IsRefusedOutsideOfTheDatabase) {
    User user;
    for (const std::string& name : {std::string("Europe/Paris"), std::string("../Europe/Berlin"),
                                    folder + "/Europe/Berlin", std::string("Europe"), std::string()}) {
        EXPECT_THROW(setZone(user, name), ArgumentError) << name;
    }
    EXPECT_EQ(user.zone.text(), "UTC0");
}

} // namespace
} // namespace tsr
