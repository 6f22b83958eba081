#include "platform/timeZone.h"

#include <filesystem>
#include <fstream>
#include <string>

#include "platform/posix/zoneFile.h"
#include "support/environment.h"

#include "gtest/gtest.h"

namespace tsr::platform {
namespace {

// A folder of zone files, gone with the test.
class ZoneFolder {
public:
    ZoneFolder() : path_(std::filesystem::path(testing::TempDir()) / name()), variable_("TZDIR", path_) {
        std::filesystem::create_directories(path_);
    }
    ~ZoneFolder() { std::filesystem::remove_all(path_); }
    ZoneFolder(const ZoneFolder&) = delete;
    ZoneFolder& operator=(const ZoneFolder&) = delete;

    std::string write(const std::string& fileName, const std::string& content) const {
        std::ofstream(path_ / fileName, std::ios::binary) << content;
        return path_ / fileName;
    }

private:
    static std::string name() {
        return std::string("tsr-") + testing::UnitTest::GetInstance()->current_test_info()->name();
    }

    std::filesystem::path path_;
    test::ScopedVariable variable_;
};

TEST(ReadZone, TakesARuleFromTheVariable) {
    const test::ScopedVariable variable("TZ", "EST5EDT,M3.2.0,M11.1.0");
    const ZoneInformation zone = readZone();
    EXPECT_EQ(zone.bias, 300);
    EXPECT_EQ(zone.daylightBias, -60);
    EXPECT_EQ(zone.daylight.month, 3);
    EXPECT_EQ(zone.daylight.instance, 2);
    EXPECT_EQ(zone.daylight.hour, 2);
    EXPECT_EQ(zone.standard.month, 11);
    EXPECT_EQ(zone.standard.instance, 1);
}

TEST(ReadZone, TakesTheNameOfAFileFromTheVariable) {
    const ZoneFolder folder;
    folder.write("Berlin", "TZif2 data\nCET-1CEST,M3.5.0,M10.5.0/3\n");
    for (const char* name : {"Berlin", ":Berlin"}) {
        const test::ScopedVariable variable("TZ", name);
        EXPECT_EQ(readZone().bias, -60);
        EXPECT_EQ(readZone().standard.hour, 3);
    }
}

TEST(ReadZone, TakesAPathFromTheVariable) {
    const ZoneFolder folder;
    const std::string path = folder.write("Tokyo", "TZif2 data\nJST-9\n");
    const test::ScopedVariable variable("TZ", ":" + path);
    EXPECT_EQ(readZone().bias, -540);
}

TEST(ReadZone, PrefersTheFileWhereANameIsBoth) {
    const ZoneFolder folder;
    folder.write("EST5EDT", "TZif2 data\nEST5EDT,M3.2.0,M11.1.0\n");
    const test::ScopedVariable variable("TZ", "EST5EDT");
    EXPECT_EQ(readZone().daylight.month, 3);
}

TEST(ReadZone, IsUtcForWhatItCannotRead) {
    const ZoneFolder folder;
    folder.write("Rubbish", "no zone file\nJST-9\n");
    for (const char* name : {"", ":", "Rubbish", "Nowhere", "no zone at all"}) {
        const test::ScopedVariable variable("TZ", name);
        EXPECT_EQ(readZone().bias, 0) << name;
        EXPECT_EQ(readZone().daylight.month, 0) << name;
    }
}

TEST(ZoneFileRule, IsTheLastLine) {
    const ZoneFolder folder;
    EXPECT_EQ(zoneFileRule(folder.write("good", "TZif2\n\n\nJST-9\n")), "JST-9");
    EXPECT_EQ(zoneFileRule(folder.write("empty rule", "TZif2 data\n\n")), "");
    EXPECT_EQ(zoneFileRule(folder.write("first version", "TZif\0 data without a footer")), std::nullopt);
    EXPECT_EQ(zoneFileRule(folder.write("cut", "TZif2 data\nJST-9")), std::nullopt);
    EXPECT_EQ(zoneFileRule(folder.write("one line feed", "TZif2 JST-9\n")), std::nullopt);
    EXPECT_EQ(zoneFileRule(folder.write("no zone", "JST-9\nJST-9\n")), std::nullopt);
    EXPECT_EQ(zoneFileRule(folder.write("empty", "")), std::nullopt);
    EXPECT_EQ(zoneFileRule(folder.write("gone", "") + "?"), std::nullopt);
}

} // namespace
} // namespace tsr::platform
