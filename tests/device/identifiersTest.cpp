#include "device/identifiers.h"

#include "support/bytes.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

TEST(DeviceIdentifiers, AreTheirWordsInOrderTopByteFirst) {
    const Dbid dbid("0123456789abcdef");
    const Unid unid("00112233445566778899aabbccddeeff");
    PalmRecordBuffer buffer;
    appendDbid(buffer, dbid);
    appendUnid(buffer, unid);
    EXPECT_EQ(std::vector<std::uint8_t>(buffer.data(), buffer.data() + buffer.size()),
              test::bytes("01 23 45 67 89 AB CD EF 00 11 22 33 44 55 66 77 88 99 AA BB CC DD EE FF"));
    EXPECT_EQ(readDbid(buffer), dbid);
    EXPECT_EQ(readUnid(buffer), unid);
    EXPECT_TRUE(buffer.atEnd());
}

} // namespace
} // namespace tsr
