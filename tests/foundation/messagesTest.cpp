#include "foundation/messages.h"

#include <utility>

#include "gtest/gtest.h"

namespace tsr {
namespace {

TEST(LoadMessage, GivesTheTextAsItStands) {
    EXPECT_EQ(loadMessage(200), "The string '$s' is not a valid string pair.");
    EXPECT_EQ(loadMessage(Message::ProcessingDeletedFolder), "$a: process deleted folder"); // the last
}

TEST(LoadMessage, FallsBackToTheNumber) {
    EXPECT_EQ(loadMessage(0), "Unable to find string resource 0");
    EXPECT_EQ(loadMessage(214), "Unable to find string resource 214"); // between two ranges
    EXPECT_EQ(loadMessage(4294967295u), "Unable to find string resource 4294967295");
}

TEST(LoadMessage, HasEveryNumberOfEveryRange) {
    const std::pair<std::uint32_t, std::uint32_t> ranges[] = {
        {200, 213},   {400, 475},   {600, 603},   {700, 701},   {900, 902},   {1000, 1011},
        {1100, 1128}, {1200, 1225}, {1300, 1300}, {1400, 1401}, {1500, 1508}, {1600, 1612},
    };
    for (const auto& [first, last] : ranges) {
        for (std::uint32_t id = first; id <= last; ++id)
            EXPECT_EQ(loadMessage(id).find("Unable to find string resource"), std::string::npos) << id;
        EXPECT_EQ(loadMessage(last + 1), "Unable to find string resource " + std::to_string(last + 1));
    }
}

TEST(DescribeSystemError, FallsBackToTheNumber) {
    EXPECT_EQ(describeSystemError(99999), "Win32 error 99999 (no description found)");
    EXPECT_EQ(describeSystemError(4294967295u), "Win32 error 4294967295 (no description found)");
}

TEST(DescribeSyncResult, KnowsEveryResult) {
    const std::pair<std::uint32_t, std::uint32_t> rows[] = {
        {0x00004011, 1100}, {0x00004017, 1101}, {0x00004010, 1102}, {0x0000400E, 1103}, {0x0000400A, 1104},
        {0x0000400B, 1105}, {0x0000400C, 1106}, {0x00004004, 1107}, {0x00004005, 1108}, {0x00004018, 1109},
        {0x00004012, 1110}, {0x10004411, 1111}, {0x00004016, 1112}, {0x10006410, 1113}, {0x00004002, 1114},
        {0x0000400D, 1115}, {0x00004003, 1117}, {0x00004009, 1118}, {0x00004006, 1119}, {0x00004007, 1120},
        {0x0000400F, 1121}, {0x10004405, 1122}, {0x00004013, 1123}, {0x00004014, 1124}, {0x00004015, 1125},
        {0x10004403, 1126}, {0x00004001, 1127}, {0x00004019, 1128},
    };
    for (const auto& [code, id] : rows)
        EXPECT_EQ(describeSyncResult(code), loadMessage(id)) << std::hex << code;
}

TEST(DescribeSyncResult, ShowsOthersInHexadecimal) {
    EXPECT_EQ(describeSyncResult(0), "Unknown conduit sync error:        0");
    EXPECT_EQ(describeSyncResult(0x4020), "Unknown conduit sync error:     4020");
    EXPECT_EQ(describeSyncResult(0xABCDEF12), "Unknown conduit sync error: abcdef12");
}

} // namespace
} // namespace tsr
