#include "records/PalmMailRecord.h"

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

// Subject "Hi", from "a", to "b", cc "c", bcc "d", reply-to "e", sent-to "f", body "g", each with its NUL.
const std::string texts = " 48 69 00 61 00 62 00 63 00 64 00 65 00 66 00 67 00";
const std::string noTexts = " 00 00 00 00 00 00 00 00";
const std::string march4 = "C4 64 09 1E"; // 1100010 0011 00100: 2002-03-04; 09:30
const std::string noDate = "00 00 00 00";

std::vector<std::uint8_t> written(const PalmMailRecord& record) {
    PalmRecordBuffer buffer;
    record.write(buffer);
    return dataOf(buffer);
}

TEST(PalmMailRecord, GoesBothWays) {
    PalmRecordBuffer buffer;
    fill(buffer, march4 + " 04 00" + texts + " 00");
    buffer.setCategoryId(4);
    const PalmMailRecord record(buffer, true);
    EXPECT_EQ(record.date, DateTime(2002, 3, 4, 9, 30, 0));
    EXPECT_EQ(record.subject, "Hi");
    EXPECT_EQ(record.from, "a");
    EXPECT_EQ(record.to, "b");
    EXPECT_EQ(record.cc, "c");
    EXPECT_EQ(record.bcc, "d");
    EXPECT_EQ(record.replyTo, "e");
    EXPECT_EQ(record.sentTo, "f");
    EXPECT_EQ(record.body, "g");
    EXPECT_EQ(record.unid, "");
    EXPECT_TRUE(record.actions.empty());
    EXPECT_EQ(record.description(), "Hi");
    EXPECT_EQ(record.category(), 4);
    EXPECT_TRUE(record.archived());
    EXPECT_EQ(record.crc(), 0x9269u); // of these 24 bytes, as any table of CRC-16/CCITT-FALSE gives it
    PalmRecordBuffer back;
    EXPECT_EQ(record.write(back), 0x9269);
    EXPECT_EQ(dataOf(back), bytes(march4 + " 04 00" + texts + " 00"));
    EXPECT_EQ(back.categoryId(), 4);
    EXPECT_EQ(back.attributes(), 0);
}

TEST(PalmMailRecord, HasDefaultsAtFirst) {
    const PalmMailRecord record;
    EXPECT_FALSE(record.date);
    EXPECT_FALSE(record.isRead());
    EXPECT_FALSE(record.wantsSignature());
    EXPECT_FALSE(record.confirmsRead());
    EXPECT_FALSE(record.confirmsDelivery());
    EXPECT_EQ(record.priority(), PalmMailRecord::Normal);
    EXPECT_EQ(record.flags(), 0x0400u);
    EXPECT_EQ(record.category(), 0);
    EXPECT_EQ(record.meetingDuration, 0u);
    EXPECT_EQ(record.crc(), 0u);
    EXPECT_FALSE(record.archived());
    EXPECT_EQ(record.syncEntryTag(), 0);
    PalmRecordBuffer buffer;
    EXPECT_EQ(record.write(buffer), 0x1F84);
    EXPECT_EQ(dataOf(buffer), bytes(noDate + " 04 00" + noTexts + " 00"));
}

TEST(PalmMailRecord, TellsTheFlagsApart) {
    const struct {
        const char* pairs;
        bool isRead;
        bool wantsSignature;
        bool confirmsRead;
        bool confirmsDelivery;
        std::uint32_t priority;
    } rows[] = {
        {"80 00", true, false, false, false, 0},
        {"40 00", false, true, false, false, 0},
        {"20 00", false, false, true, false, 0},
        {"10 00", false, false, false, true, 0},
        {"00 00", false, false, false, false, 0},
        {"04 00", false, false, false, false, 1},
        {"08 00", false, false, false, false, 2},
        {"0C 00", false, false, false, false, 3}, // no priority has it
        {"03 FF", false, false, false, false, 0},
        {"FF FF", true, true, true, true, 3},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.pairs);
        PalmRecordBuffer buffer;
        fill(buffer, noDate + ' ' + row.pairs + noTexts + " 00");
        const PalmMailRecord record(buffer, false);
        EXPECT_EQ(record.isRead(), row.isRead);
        EXPECT_EQ(record.wantsSignature(), row.wantsSignature);
        EXPECT_EQ(record.confirmsRead(), row.confirmsRead);
        EXPECT_EQ(record.confirmsDelivery(), row.confirmsDelivery);
        EXPECT_EQ(record.priority(), row.priority);
        EXPECT_EQ(record.syncEntryUserData(), row.isRead ? 0 : 1);
        EXPECT_EQ(written(record), bytes(noDate + ' ' + row.pairs + noTexts + " 00")); // as they are
    }
}

TEST(PalmMailRecord, SetsEachFlagOnItsOwn) {
    PalmRecordBuffer buffer;
    fill(buffer, noDate + " 03 FF" + noTexts);
    PalmMailRecord record(buffer, false);
    record.setRead(true);
    EXPECT_EQ(record.flags(), 0x83FFu);
    record.setWantsSignature(true);
    EXPECT_EQ(record.flags(), 0xC3FFu);
    record.setConfirmsRead(true);
    EXPECT_EQ(record.flags(), 0xE3FFu);
    record.setConfirmsDelivery(true);
    EXPECT_EQ(record.flags(), 0xF3FFu);
    record.setPriority(PalmMailRecord::Low);
    EXPECT_EQ(record.flags(), 0xFBFFu);
    record.setPriority(PalmMailRecord::Normal);
    EXPECT_EQ(record.flags(), 0xF7FFu);
    record.setPriority(PalmMailRecord::High);
    EXPECT_EQ(record.flags(), 0xF3FFu);
    record.setRead(false);
    record.setConfirmsDelivery(false);
    EXPECT_EQ(record.flags(), 0x63FFu);
}

TEST(PalmMailRecord, ReadingAMessageLeavesItsCrc) {
    PalmRecordBuffer unreadBuffer;
    fill(unreadBuffer, march4 + " 04 00" + texts + " 00");
    PalmRecordBuffer readBuffer;
    fill(readBuffer, march4 + " 84 00" + texts + " 00");
    const PalmMailRecord unread(unreadBuffer, false);
    const PalmMailRecord read(readBuffer, false);
    EXPECT_EQ(unread.crc(), 0x9269u);
    EXPECT_EQ(read.crc(), 0x9269u);
    EXPECT_EQ(unread.syncEntryUserData(), 1);
    EXPECT_EQ(read.syncEntryUserData(), 0);
    PalmRecordBuffer back;
    EXPECT_EQ(read.write(back), 0x9269);
    EXPECT_EQ(dataOf(back), bytes(march4 + " 84 00" + texts + " 00")); // the record itself has the bit
}

TEST(PalmMailRecord, ClearsTheReadBitAndTheLastByteInTheBuffer) {
    PalmRecordBuffer buffer;
    fill(buffer, march4 + " 84 00" + texts + " 55");
    const PalmMailRecord record(buffer, false);
    EXPECT_TRUE(record.isRead());
    EXPECT_EQ(record.crc(), 0x9269u);
    EXPECT_EQ(dataOf(buffer), bytes(march4 + " 04 00" + texts + " 00"));
}

TEST(PalmMailRecord, TheLastByteMayBeMissing) {
    PalmRecordBuffer buffer;
    fill(buffer, march4 + " 04 00" + texts);
    const PalmMailRecord record(buffer, false);
    EXPECT_EQ(record.body, "g");
    EXPECT_EQ(record.crc(), 0x4D0Bu); // of the 23 bytes
    EXPECT_EQ(dataOf(buffer), bytes(march4 + " 04 00" + texts));
    PalmRecordBuffer back;
    EXPECT_EQ(record.write(back), 0x9269); // gains it
    EXPECT_EQ(dataOf(back), bytes(march4 + " 04 00" + texts + " 00"));
}

TEST(PalmMailRecord, AMessageMayHaveNoDate) {
    PalmRecordBuffer buffer;
    fill(buffer, "00 00 63 FF 04 00" + noTexts + " 00"); // what would be the time is nothing
    PalmMailRecord record(buffer, false);
    EXPECT_FALSE(record.date);
    EXPECT_EQ(written(record), bytes(noDate + " 04 00" + noTexts + " 00"));
    record.date = DateTime(2002, 3, 4, 9, 30, 59); // seconds have no place
    EXPECT_EQ(written(record), bytes(march4 + " 04 00" + noTexts + " 00"));
    record.date = DateTime(1970, 1, 1, 0, 0, 0); // 1000010 0001 00001: whatever it holds
    EXPECT_EQ(written(record), bytes("84 21 00 00 04 00" + noTexts + " 00"));
}

TEST(PalmMailRecord, ANoticeHasAnInformationBlock) {
    const std::string begin = "\n\n\n\n\n\n----- Vellum Info -----\n";
    const std::string end = "----- End Vellum Info -----\n";
    PalmMailRecord record;
    record.body = "Come!";
    record.unid = "0123abcd";
    const auto bodyOf = [&record] {
        const auto data = written(record);
        EXPECT_EQ(data.back(), 0);
        return std::string(data.begin() + 13, data.end() - 2); // 6 bytes and seven NULs, NUL and last byte
    };
    EXPECT_EQ(bodyOf(), "Come!"); // no action, no notice
    record.actions = {"Accept", "Decline"};
    EXPECT_EQ(bodyOf(), "Come!" + begin + "UNID:0123abcd;\n" + end);
    record.unid.clear();
    EXPECT_EQ(bodyOf(), "Come!" + begin + end);
    EXPECT_EQ(record.body, "Come!");
}

TEST(PalmMailRecord, GivesTheCrcOfItsOwnBytesAlone) {
    PalmRecordBuffer parsed;
    fill(parsed, march4 + " 84 00" + texts + " 00");
    const PalmMailRecord record(parsed, false);
    PalmRecordBuffer buffer;
    buffer.appendWord(0);
    EXPECT_EQ(record.write(buffer), 0x9269);
    EXPECT_EQ(dataOf(buffer), bytes("00 00 " + march4 + " 84 00" + texts + " 00"));
}

TEST(PalmMailRecord, RefusesARecordCutShort) {
    const auto whole = bytes(march4 + " 04 00" + texts + " 00");
    for (std::size_t size = 0; size <= whole.size() - 2; ++size) {
        SCOPED_TRACE(size);
        PalmRecordBuffer buffer;
        buffer.appendBytes(whole.data(), size);
        const char* const text = size < 2 ? "Buffer underun occurred when reading a 16 bit integer."
                               : size < 4 ? "Buffer underun occurred when reading a 8 bit integer."
                               : size < 6 ? "Buffer underun occurred when reading a 16 bit integer."
                                          : "Null terminator not found in string.";
        EXPECT_EQ(textRaisedBy([&] { PalmMailRecord(buffer, false); }), text);
    }
}

TEST(PalmMailRecord, RefusesBadBytes) {
    const std::pair<std::string, const char*> rows[] = {
        {march4 + " 04 00" + texts + " 00 00", "Palm record has excess data."},
        {march4 + " 04 00" + texts + " 61 62 63", "Palm record has excess data."},
        // 1100010 1101 00001, 1100010 0010 11110, 1111111 1111 11111
        {"C5 A1 00 00 04 00" + texts,
         "The specified year(2002), month(13) and day(1) do not form a valid date."},
        {"C4 5E 00 00 04 00" + texts,
         "The specified year(2002), month(2) and day(30) do not form a valid date."},
        {"FF FF 00 00 04 00" + texts,
         "The specified year(2031), month(15) and day(31) do not form a valid date."},
        {"B1 9F 00 00 04 00" + texts, "Dates prior to 1993 are not supported (bad date is 12/31/92)."},
        {"C4 64 18 00 04 00" + texts,
         "The specified hour(24), minute(0) and second(0) do not form a valid time."},
        {"C4 64 17 3C 04 00" + texts,
         "The specified hour(23), minute(60) and second(0) do not form a valid time."},
    };
    for (const auto& [pairs, text] : rows) {
        SCOPED_TRACE(pairs);
        PalmRecordBuffer buffer;
        fill(buffer, pairs);
        EXPECT_EQ(textRaisedBy([&] { PalmMailRecord(buffer, false); }), text);
    }
}

TEST(PalmMailRecord, ChecksACategoryThatIsSet) {
    PalmMailRecord record;
    record.setCategory(15);
    EXPECT_EQ(textRaisedBy([&] { record.setCategory(16); }),
              "The specified Palm category value (16) is not valid.");
    EXPECT_EQ(textRaisedBy([&] { record.setCategory(256); }),
              "The specified Palm category value (256) is not valid.");
    EXPECT_EQ(record.category(), 15);
}

TEST(PalmMailRecord, RefusesToWriteWhatNoRecordCanHold) {
    PalmMailRecord record;
    record.body = std::string(65535 - 15, 'a'); // 6 bytes, eight NULs and the last byte
    PalmRecordBuffer largest;
    record.write(largest);
    EXPECT_EQ(largest.size(), 65535u);
    record.body += 'a';
    PalmRecordBuffer buffer;
    EXPECT_EQ(textRaisedBy([&] { record.write(buffer); }), "Buffer length exceeded.");
}

void appendText(std::vector<std::uint8_t>& data, const std::string& text) {
    data.insert(data.end(), text.begin(), text.end());
    data.push_back(0);
}

TEST(PalmMailRecord, WhatParsesIsWrittenAsItWas) {
    for (std::uint32_t seed = 1; seed <= 2000; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        test::RandomText random(seed);
        const bool dated = random.flag();
        const std::uint32_t date =
            dated ? (89 + random.below(39)) << 9 | (1 + random.below(12)) << 5 | (1 + random.below(28)) : 0;
        std::vector<std::uint8_t> data{static_cast<std::uint8_t>(date >> 8),
                                       static_cast<std::uint8_t>(date),
                                       static_cast<std::uint8_t>(dated ? random.below(24) : 0),
                                       static_cast<std::uint8_t>(dated ? random.below(60) : 0),
                                       static_cast<std::uint8_t>(random.below(256)),
                                       static_cast<std::uint8_t>(random.below(256))};
        for (int text = 0; text < 7; ++text) appendText(data, random.text(40));
        appendText(data, random.text(400));
        data.push_back(0);
        PalmRecordBuffer buffer;
        fill(buffer, data);
        buffer.setCategoryId(static_cast<std::int16_t>(random.below(16)));
        const PalmMailRecord record(buffer, false);
        PalmRecordBuffer back;
        EXPECT_EQ(record.write(back), record.crc());
        EXPECT_EQ(dataOf(back), data);
        EXPECT_EQ(back.categoryId(), buffer.categoryId());
    }
}

} // namespace
} // namespace tsr
