#include "records/PalmToDoRecord.h"

#include "records/recordBytes.h"
#include "support/RandomText.h"
#include "support/errors.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

using test::bytes;
using test::dataOf;
using test::fill;
using test::textRaisedBy;

TEST(PalmToDoRecord, GoesBothWays) {
    const struct {
        const char* pairs;
        bool hasDueDate;
        Date dueDate;
        bool completed;
        std::int32_t priority;
        const char* description;
        const char* note;
        std::uint32_t crc; // CRC-16/CCITT-FALSE of these bytes, as any table of it gives
    } rows[] = {
        {"FF FF 83 61 00 00", false, Date(1970, 1, 1), true, 3, "a", "", 0xEABF},
        {"C4 64 02 61 00 62 0A 00", true, Date(2002, 3, 4), false, 2, "a", "b\n",
         0x65D3}, // 1100010 0011 00100
        {"C4 64 04 00 00", true, Date(2002, 3, 4), false, 4, "", "", 0xE451},
        {"B2 21 FF 00 00", true, Date(1993, 1, 1), true, 127, "", "", 0xF528}, // the first day that is taken
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.pairs);
        PalmRecordBuffer buffer;
        fill(buffer, row.pairs);
        buffer.setCategoryId(3);
        const PalmToDoRecord record(buffer, true);
        EXPECT_EQ(record.hasDueDate(), row.hasDueDate);
        EXPECT_EQ(record.dueDate(), row.dueDate);
        EXPECT_EQ(record.completed(), row.completed);
        EXPECT_EQ(record.priority(), row.priority);
        EXPECT_EQ(record.description(), row.description);
        EXPECT_EQ(record.note(), row.note);
        EXPECT_FALSE(record.isPrivate());
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

TEST(PalmToDoRecord, HasDefaultsAtFirst) {
    const PalmToDoRecord record;
    EXPECT_FALSE(record.hasDueDate());
    EXPECT_EQ(record.dueDate(), Date(1970, 1, 1));
    EXPECT_FALSE(record.completed());
    EXPECT_EQ(record.priority(), 1);
    EXPECT_FALSE(record.isPrivate());
    EXPECT_EQ(record.description(), "");
    EXPECT_EQ(record.note(), "");
    EXPECT_EQ(record.category(), 0);
    EXPECT_EQ(record.crc(), 0u);
    EXPECT_FALSE(record.archived());
    PalmRecordBuffer buffer;
    record.write(buffer);
    EXPECT_EQ(dataOf(buffer), bytes("FF FF 01 00 00"));
}

TEST(PalmToDoRecord, TheSecretAttributeIsThePrivateFlag) {
    const struct {
        std::uint8_t read;
        bool isPrivate;
        std::uint8_t standing; // in the buffer that is written to
        std::uint8_t written;
    } rows[] = {
        {0x10, true, 0x00, 0x10},  {0x00, false, 0x00, 0x00},
        {0xEF, false, 0x00, 0x00},                            // every other attribute
        {0x50, true, 0x48, 0x58},  {0x00, false, 0x10, 0x10}, // a clear flag leaves them as they are
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << int{row.read} << ' ' << int{row.standing});
        PalmRecordBuffer buffer;
        fill(buffer, "FF FF 01 00 00");
        buffer.setAttributes(row.read);
        const PalmToDoRecord record(buffer, false);
        EXPECT_EQ(record.isPrivate(), row.isPrivate);
        PalmRecordBuffer written;
        written.setAttributes(row.standing);
        record.write(written);
        EXPECT_EQ(written.attributes(), row.written);
    }
}

TEST(PalmToDoRecord, ThePriorityGivesItsLowByte) {
    const struct {
        std::int32_t priority;
        bool completed;
        std::uint8_t written;
    } rows[] = {
        {1, true, 0x81},    {5, false, 0x05},    {0x103, false, 0x03},
        {-1, false, 0xFF},  {0x80, false, 0x80}, // as if it were completed
        {0x81, true, 0x81},                      // the bit that stands for it is there already
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.priority);
        PalmToDoRecord record;
        record.setPriority(row.priority);
        record.setCompleted(row.completed);
        PalmRecordBuffer buffer;
        record.write(buffer);
        EXPECT_EQ(buffer.byteAt(2), row.written);
    }
}

TEST(PalmToDoRecord, GivesTheCrcOfItsOwnBytesAlone) {
    PalmToDoRecord record;
    record.setDescription("a");
    record.setPriority(3);
    record.setCompleted(true);
    PalmRecordBuffer buffer;
    buffer.appendWord(0);
    EXPECT_EQ(record.write(buffer), 0xEABF);
    EXPECT_EQ(dataOf(buffer), bytes("00 00 FF FF 83 61 00 00"));
}

TEST(PalmToDoRecord, RefusesBadBytes) {
    const std::pair<const char*, const char*> rows[] = {
        // A record cut short at each length.
        {"", "Buffer underun occurred when reading a 16 bit integer."},
        {"C4", "Buffer underun occurred when reading a 16 bit integer."},
        {"C4 64", "Buffer underun occurred when reading a 8 bit integer."},
        {"C4 64 02", "Null terminator not found in string."},
        {"C4 64 02 61", "Null terminator not found in string."},
        {"C4 64 02 61 00", "Null terminator not found in string."},
        {"C4 64 02 61 00 62", "Null terminator not found in string."},
        {"C4 64 02 61 00 62 00 00", "Palm record has excess data."},
        // 1100010 1101 00001, 1100010 0010 11110, 1100010 0000 00000
        {"C5 A1 02 00 00", "The specified year(2002), month(13) and day(1) do not form a valid date."},
        {"C4 5E 02 00 00", "The specified year(2002), month(2) and day(30) do not form a valid date."},
        {"C4 00 02 00 00", "The specified year(2002), month(0) and day(0) do not form a valid date."},
        {"B1 9F 02 00 00", "Dates prior to 1993 are not supported (bad date is 12/31/92)."},
        {"00 21 02 00 00", "Dates prior to 1993 are not supported (bad date is 01/01/04)."}, // 1904
    };
    for (const auto& [pairs, text] : rows) {
        SCOPED_TRACE(pairs);
        PalmRecordBuffer buffer;
        fill(buffer, pairs);
        EXPECT_EQ(textRaisedBy([&] { PalmToDoRecord(buffer, false); }), text);
    }
}

TEST(PalmToDoRecord, ChecksACategoryThatIsSet) {
    PalmToDoRecord record;
    record.setCategory(15);
    EXPECT_EQ(record.category(), 15);
    EXPECT_EQ(textRaisedBy([&] { record.setCategory(16); }),
              "The specified Palm category value (16) is not valid.");
    EXPECT_EQ(textRaisedBy([&] { record.setCategory(256); }),
              "The specified Palm category value (256) is not valid.");
    EXPECT_EQ(record.category(), 15);
}

TEST(PalmToDoRecord, RefusesToWriteWhatNoRecordCanHold) {
    PalmToDoRecord record;
    record.setNote(std::string(65535 - 5, 'a'));
    PalmRecordBuffer largest;
    record.write(largest);
    EXPECT_EQ(largest.size(), 65535u);
    record.setNote(std::string(65535 - 4, 'a'));
    PalmRecordBuffer buffer;
    EXPECT_EQ(textRaisedBy([&] { record.write(buffer); }), "Buffer length exceeded.");
}

void appendText(std::vector<std::uint8_t>& data, const std::string& text) {
    data.insert(data.end(), text.begin(), text.end());
    data.push_back(0);
}

TEST(PalmToDoRecord, WhatParsesIsWrittenAsItWas) {
    for (std::uint32_t seed = 1; seed <= 2000; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        test::RandomText random(seed);
        const std::uint32_t date = random.flag() ? 0xFFFF
                                                 : (89 + random.below(39)) << 9 | (1 + random.below(12)) << 5
                                                       | (1 + random.below(28));
        std::vector<std::uint8_t> data{static_cast<std::uint8_t>(date >> 8), static_cast<std::uint8_t>(date),
                                       static_cast<std::uint8_t>(random.below(256))};
        appendText(data, random.text(40));
        appendText(data, random.text(200));
        PalmRecordBuffer buffer;
        fill(buffer, data);
        buffer.setCategoryId(static_cast<std::int16_t>(random.below(16)));
        buffer.setAttributes(random.flag() ? 0x10 : 0);
        const PalmToDoRecord record(buffer, false);
        PalmRecordBuffer written;
        EXPECT_EQ(record.write(written), record.crc());
        EXPECT_EQ(dataOf(written), data);
        EXPECT_EQ(written.categoryId(), buffer.categoryId());
        EXPECT_EQ(written.attributes(), buffer.attributes());
    }
}

} // namespace
} // namespace tsr
