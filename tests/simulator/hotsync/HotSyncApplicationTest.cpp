#include "hotsync/HotSyncApplication.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

TEST(HotSyncApplication, IsFoundByItsName) {
    const struct {
        const char* name;
        std::uint32_t creator;
        std::uint32_t type;
    } rows[] = {
        {"address", 0x61646472, 0x44415441}, // addr, DATA
        {"datebook", 0x64617465, 0x44415441}, {"memo", 0x6D656D6F, 0x44415441},
        {"todo", 0x746F646F, 0x44415441},     {"mail", 0x6D61696C, 0x44415441},
        {"freetime", 0x54535241, 0x46524545}, // TSRA, FREE
    };
    ASSERT_EQ(hotSyncApplications().size(), std::size(rows));
    for (const auto& row : rows) {
        const HotSyncApplication* found = findHotSyncApplication(row.name);
        ASSERT_NE(found, nullptr) << row.name;
        EXPECT_EQ(found->creator, row.creator) << row.name;
        EXPECT_EQ(found->type, row.type) << row.name;
    }
}

TEST(HotSyncApplication, HasNoOtherNames) {
    for (const char* name : {"", "Memo", "memo ", "MemoDB"})
        EXPECT_EQ(findHotSyncApplication(name), nullptr) << name;
}

} // namespace
} // namespace tsr
