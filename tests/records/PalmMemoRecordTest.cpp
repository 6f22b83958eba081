#include "records/PalmMemoRecord.h"

#include "records/recordBytes.h"
#include "support/errors.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

using test::bytes;
using test::dataOf;
using test::fill;
using test::textRaisedBy;

TEST(PalmMemoRecord, GoesBothWays) {
    const struct {
        const char* pairs;
        std::string text;
        std::uint32_t crc; // CRC-16/CCITT-FALSE of these bytes, as any table of it gives
    } rows[] = {
        {"4D 69 6C 6B 00", "Milk", 0xB261},
        {"00", "", 0xE1F0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.pairs);
        PalmRecordBuffer buffer;
        fill(buffer, row.pairs);
        buffer.setCategoryId(3);
        const PalmMemoRecord record(buffer, true);
        EXPECT_EQ(record.text(), row.text);
        EXPECT_EQ(record.category(), 3);
        EXPECT_TRUE(record.archived());
        EXPECT_EQ(record.crc(), row.crc);
        PalmRecordBuffer written;
        EXPECT_EQ(record.write(written), row.crc);
        EXPECT_EQ(dataOf(written), bytes(row.pairs));
        EXPECT_EQ(written.categoryId(), 3);
        EXPECT_EQ(written.attributes(), 0);
    }
}

TEST(PalmMemoRecord, GivesTheCrcOfItsOwnBytesAlone) {
    PalmMemoRecord record;
    record.setText("Milk");
    PalmRecordBuffer buffer;
    buffer.appendWord(0);
    EXPECT_EQ(record.write(buffer), 0xB261);
    EXPECT_EQ(dataOf(buffer), bytes("00 00 4D 69 6C 6B 00"));
}

TEST(PalmMemoRecord, NeitherReadsNorSetsTheSecretAttribute) {
    PalmRecordBuffer buffer;
    fill(buffer, "4D 00");
    buffer.setAttributes(0x10);
    const PalmMemoRecord record(buffer, false);
    PalmRecordBuffer written;
    record.write(written);
    EXPECT_EQ(written.attributes(), 0);
    written.setAttributes(0x10);
    record.write(written);
    EXPECT_EQ(written.attributes(), 0x10);
}

TEST(PalmMemoRecord, IsEmptyAtFirst) {
    const PalmMemoRecord record;
    EXPECT_EQ(record.text(), "");
    EXPECT_EQ(record.category(), 0);
    EXPECT_EQ(record.crc(), 0u);
    EXPECT_FALSE(record.archived());
}

TEST(PalmMemoRecord, RefusesBadBytes) {
    const std::pair<const char*, const char*> rows[] = {
        {"", "Null terminator not found in string."},
        {"4D", "Null terminator not found in string."},
        {"4D 69 6C 6B", "Null terminator not found in string."},
        {"4D 00 00", "Palm record has excess data."},
        {"41 42 43 44 45 46 47 48 00 21", "Palm record has excess data."}, // nine bytes of ten
    };
    for (const auto& [pairs, text] : rows) {
        SCOPED_TRACE(pairs);
        PalmRecordBuffer buffer;
        fill(buffer, pairs);
        EXPECT_EQ(textRaisedBy([&] { PalmMemoRecord(buffer, false); }), text);
    }
}

TEST(PalmMemoRecord, ChecksACategoryThatIsSet) {
    PalmMemoRecord record;
    record.setCategory(15);
    EXPECT_EQ(record.category(), 15);
    EXPECT_EQ(textRaisedBy([&] { record.setCategory(16); }),
              "The specified Palm category value (16) is not valid.");
    EXPECT_EQ(record.category(), 15);
}

TEST(PalmMemoRecord, TakesACategoryFromTheDeviceAsItIs) {
    PalmRecordBuffer buffer;
    fill(buffer, "00");
    buffer.setCategoryId(16);
    EXPECT_EQ(PalmMemoRecord(buffer, false).category(), 16);
}

TEST(PalmMemoRecord, IsDescribedByItsFirstLine) {
    const std::pair<const char*, const char*> rows[] = {
        {"Shopping\nMilk", "Shopping"},
        {"Shopping", "Shopping"},
        {"\n\nShopping\n", "Shopping"},
        {"Subject: X", "Subject: X"},
        {"", ""},
        {"\n\n", ""},
    };
    for (const auto& [text, description] : rows) {
        SCOPED_TRACE(text);
        PalmMemoRecord record;
        record.setText(text);
        EXPECT_EQ(record.description(), description);
    }
}

TEST(PalmMemoRecord, RefusesToWriteWhatNoRecordCanHold) {
    PalmMemoRecord record;
    record.setText(std::string(65534, 'a'));
    PalmRecordBuffer largest;
    record.write(largest);
    EXPECT_EQ(largest.size(), 65535u);
    record.setText(std::string(65535, 'a'));
    PalmRecordBuffer buffer;
    EXPECT_EQ(textRaisedBy([&] { record.write(buffer); }), "Buffer length exceeded.");
    EXPECT_TRUE(buffer.isEmpty());
}

} // namespace
} // namespace tsr
