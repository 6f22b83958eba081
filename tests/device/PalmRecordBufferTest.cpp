#include "device/PalmRecordBuffer.h"

#include "foundation/GeneralError.h"
#include "support/bytes.h"
#include "support/errors.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

using test::bytes;
using test::textRaisedBy;

PalmRecordBuffer bufferOf(const std::string& pairs) {
    const std::vector<std::uint8_t> data = bytes(pairs);
    PalmRecordBuffer buffer;
    buffer.appendBytes(data.data(), data.size());
    return buffer;
}

std::vector<std::uint8_t> contents(const PalmRecordBuffer& buffer) {
    return std::vector<std::uint8_t>(buffer.data(), buffer.data() + buffer.size());
}

constexpr char underrun[] = "Buffer underun occurred when reading a ";

TEST(PalmRecordBuffer, StartsEmptyWithRoomFor1024Bytes) {
    const PalmRecordBuffer buffer;
    EXPECT_TRUE(buffer.isEmpty());
    EXPECT_EQ(buffer.capacity(), 1024U);
}

TEST(PalmRecordBuffer, IsAtItsEndBeforeAnythingIsRead) {
    PalmRecordBuffer buffer = bufferOf("01");
    EXPECT_TRUE(buffer.atEnd()); // nothing has bound the cursor yet
    EXPECT_EQ(buffer.remaining(), 0U);
    EXPECT_EQ(buffer.readByte(), 1);
    EXPECT_TRUE(buffer.atEnd());
}

TEST(PalmRecordBuffer, BindsItsCursorWithEveryOtherReader) {
    PalmRecordBuffer byIndex = bufferOf("01 02");
    byIndex.byteAt(0);
    EXPECT_EQ(byIndex.remaining(), 2U);
    PalmRecordBuffer byPosition = bufferOf("01 02");
    byPosition.position();
    EXPECT_EQ(byPosition.remaining(), 2U);
    PalmRecordBuffer byCrc = bufferOf("01 02");
    byCrc.crc(0);
    EXPECT_EQ(byCrc.remaining(), 2U);
}

TEST(PalmRecordBuffer, KeepsTheEndThatWasBound) {
    PalmRecordBuffer buffer = bufferOf("01 02");
    buffer.readByte();
    buffer.appendByte(3);
    EXPECT_EQ(buffer.remaining(), 1U);
    EXPECT_EQ(buffer.readByte(), 2);
    EXPECT_TRUE(buffer.atEnd());
    EXPECT_EQ(buffer.size(), 3U);
}

TEST(PalmRecordBuffer, ReadsIntegersTopByteFirst) {
    PalmRecordBuffer buffer = bufferOf("01 02 03 04 05 06 07 08 09 0A");
    EXPECT_EQ(buffer.readByte(), 0x01);
    EXPECT_EQ(buffer.readWord(), 0x0203);
    EXPECT_EQ(buffer.read24(), 0x040506U);
    EXPECT_EQ(buffer.readDword(), 0x0708090AU);
    EXPECT_TRUE(buffer.atEnd());
    EXPECT_EQ(buffer.position(), 10U);
}

TEST(PalmRecordBuffer, WritesIntegersTopByteFirst) {
    PalmRecordBuffer buffer;
    buffer.appendByte(0x01);
    buffer.appendWord(0x0203);
    buffer.append24(0xFF040506); // the low 24 bits alone
    buffer.appendDword(0x0708090A);
    EXPECT_EQ(contents(buffer), bytes("01 02 03 04 05 06 07 08 09 0A"));
}

TEST(PalmRecordBuffer, LeavesTheCursorWhenAnIntegerIsCut) {
    PalmRecordBuffer buffer = bufferOf("01 02");
    EXPECT_EQ(textRaisedBy([&] { buffer.readDword(); }), std::string(underrun) + "32 bit integer.");
    EXPECT_EQ(textRaisedBy([&] { buffer.read24(); }), std::string(underrun) + "24 bit integer.");
    EXPECT_EQ(buffer.position(), 0U);
    EXPECT_EQ(buffer.readWord(), 0x0102);
    EXPECT_EQ(textRaisedBy([&] { buffer.readWord(); }), std::string(underrun) + "16 bit integer.");
    EXPECT_EQ(textRaisedBy([&] { buffer.readByte(); }), std::string(underrun) + "8 bit integer.");
}

TEST(PalmRecordBuffer, ReadsAStringUpToItsNul) {
    PalmRecordBuffer buffer = bufferOf("4D 69 6C 6B 00 00 41"); // "Milk", "", and an "A" without an end
    EXPECT_EQ(buffer.readString(), "Milk");
    EXPECT_EQ(buffer.readString(), "");
    EXPECT_EQ(textRaisedBy([&] { buffer.readString(); }), "Null terminator not found in string.");
    EXPECT_EQ(buffer.readByte(), 0x41); // the cursor has stayed
    EXPECT_EQ(textRaisedBy([&] { buffer.readString(); }), "Null terminator not found in string.");
}

TEST(PalmRecordBuffer, WritesAStringWithItsNul) {
    PalmRecordBuffer buffer;
    buffer.appendString("Milk");
    buffer.appendString(std::string("a\0b", 3)); // a NUL inside is kept
    EXPECT_EQ(contents(buffer), bytes("4D 69 6C 6B 00 61 00 62 00"));
}

TEST(PalmRecordBuffer, ReadsATextOfFixedRoomWithoutMoving) {
    PalmRecordBuffer slot;
    slot.appendWord(0);
    slot.appendString("123456789012345"); // 15 characters and a NUL
    EXPECT_EQ(slot.readFixedString(2, 15), "123456789012345");
    EXPECT_EQ(slot.position(), 0U);

    PalmRecordBuffer tooLong;
    tooLong.appendWord(0);
    tooLong.appendString("1234567890123456");
    EXPECT_EQ(textRaisedBy([&] { tooLong.readFixedString(2, 15); }), "Null terminator not found in string.");
}

TEST(PalmRecordBuffer, RefusesATextOfFixedRoomOutsideTheData) {
    PalmRecordBuffer buffer = bufferOf("41 42");
    EXPECT_EQ(textRaisedBy([&] { buffer.readFixedString(3, 15); }), "Buffer underun.");
    EXPECT_EQ(textRaisedBy([&] { buffer.readFixedString(2, 15); }),
              "Null terminator not found in string."); // at the end
    EXPECT_EQ(textRaisedBy([&] { buffer.readFixedString(0, 15); }), "Null terminator not found in string.");
}

TEST(PalmRecordBuffer, GivesAByteByItsIndex) {
    PalmRecordBuffer buffer = bufferOf("01 02");
    EXPECT_EQ(buffer.byteAt(1), 2);
    EXPECT_EQ(textRaisedBy([&] { buffer.byteAt(2); }), "Buffer length exceeded.");
}

TEST(PalmRecordBuffer, TakesTheCrcFromAnOffset) {
    PalmRecordBuffer buffer = bufferOf("00 00 31 32 33 34 35 36 37 38 39");
    EXPECT_EQ(buffer.crc(2), 0x29B1); // of "123456789"
    EXPECT_EQ(buffer.crc(11), 0xFFFF);
    EXPECT_EQ(buffer.crc(12), 0xFFFF);
}

TEST(PalmRecordBuffer, PutsAtAnIndexWithoutChangingItsSize) {
    PalmRecordBuffer buffer = bufferOf("01 02 03 04 05 06 07 08");
    buffer.putByte(0xAA, 0);
    buffer.putWord(0xBBCC, 1);
    buffer.putDword(0xDDEEFF11, 3);
    buffer.putString("", 7);
    EXPECT_EQ(contents(buffer), bytes("AA BB CC DD EE FF 11 00"));
    EXPECT_EQ(buffer.size(), 8U);
}

TEST(PalmRecordBuffer, GrowsForAPutBeyondItsSize) {
    PalmRecordBuffer buffer;
    buffer.putByte(7, 1500);
    EXPECT_EQ(buffer.size(), 0U);
    EXPECT_EQ(buffer.capacity(), 2048U);
    EXPECT_EQ(buffer.data()[1499], 0);
    EXPECT_EQ(buffer.data()[1500], 7);
}

TEST(PalmRecordBuffer, GrowsToTwiceItsRoomOrToWhatIsNeeded) {
    PalmRecordBuffer buffer;
    buffer.grow(1024);
    EXPECT_EQ(buffer.capacity(), 1024U);
    buffer.grow(1025);
    EXPECT_EQ(buffer.capacity(), 2048U);
    buffer.grow(5000);
    EXPECT_EQ(buffer.capacity(), 5000U);
    buffer.grow(40000);
    EXPECT_EQ(buffer.capacity(), 40000U);
    buffer.grow(40001); // twice as much would not fit into 16 bits
    EXPECT_EQ(buffer.capacity(), 65535U);
}

TEST(PalmRecordBuffer, KeepsItsDataAsItGrows) {
    PalmRecordBuffer buffer = bufferOf("01 02 03");
    buffer.grow(3000);
    EXPECT_EQ(contents(buffer), bytes("01 02 03"));
}

TEST(PalmRecordBuffer, TakesBytesBehindItsDataAlongOnlyWhenItHasData) {
    PalmRecordBuffer empty;
    empty.putByte(7, 10);
    empty.grow(1025);
    EXPECT_EQ(empty.data()[10], 0); // nothing counts as worth copying
    PalmRecordBuffer filled = bufferOf("01");
    filled.putByte(7, 10);
    filled.grow(1025);
    EXPECT_EQ(filled.data()[10], 7);
}

TEST(PalmRecordBuffer, RefusesWhatPasses65535Bytes) {
    PalmRecordBuffer buffer;
    const std::string most(65534, 'x');
    buffer.appendString(most); // 65,535 bytes with its NUL
    EXPECT_EQ(buffer.size(), 65535U);
    EXPECT_EQ(textRaisedBy([&] { buffer.appendByte(1); }), "Buffer length exceeded.");
    EXPECT_EQ(textRaisedBy([&] { buffer.putWord(1, 65534); }), "Buffer length exceeded.");
    EXPECT_EQ(textRaisedBy([&] { buffer.putByte(1, 65535); }), "Buffer length exceeded.");
    EXPECT_EQ(buffer.size(), 65535U);
    EXPECT_EQ(buffer.data()[65533], 'x');
    EXPECT_EQ(buffer.data()[65534], 0);
}

TEST(PalmRecordBuffer, CopiesItsDataAndFieldsButNotItsCursor) {
    PalmRecordBuffer buffer = bufferOf("01 02 03");
    buffer.setRecordId(0x123456);
    buffer.setCategoryId(4);
    buffer.setAttributes(0x18);
    buffer.readByte();
    PalmRecordBuffer copy(buffer);
    EXPECT_EQ(copy.capacity(), 3U);
    EXPECT_EQ(contents(copy), bytes("01 02 03"));
    EXPECT_EQ(copy.recordId(), 0x123456U);
    EXPECT_EQ(copy.categoryId(), 4);
    EXPECT_EQ(copy.attributes(), 0x18);
    EXPECT_TRUE(copy.atEnd());
    EXPECT_EQ(copy.readByte(), 1);
    copy.appendByte(4);
    EXPECT_EQ(contents(buffer), bytes("01 02 03")); // a deep copy
}

TEST(PalmRecordBuffer, CopiesAnEmptyRecord) {
    const PalmRecordBuffer empty;
    PalmRecordBuffer copy(empty);
    EXPECT_EQ(copy.capacity(), 0U);
    EXPECT_EQ(textRaisedBy([&] { copy.readString(); }), "Null terminator not found in string.");
    copy.appendByte(1);
    EXPECT_EQ(contents(copy), bytes("01"));
}

TEST(PalmRecordBuffer, ClearsItsFieldsAndKeepsItsRoom) {
    PalmRecordBuffer buffer = bufferOf("01 02 03");
    buffer.grow(3000);
    buffer.setRecordId(5);
    buffer.setCategoryId(4);
    buffer.setAttributes(0x80);
    buffer.clear();
    EXPECT_EQ(buffer.recordId(), 0U);
    EXPECT_EQ(buffer.categoryId(), 0);
    EXPECT_EQ(buffer.attributes(), 0);
    EXPECT_TRUE(buffer.isEmpty());
    EXPECT_EQ(buffer.capacity(), 3000U);
}

TEST(PalmRecordBuffer, TellsTheAttributesThatItKnows) {
    PalmRecordBuffer buffer;
    EXPECT_FALSE(buffer.isDeleted());
    EXPECT_FALSE(buffer.isArchived());
    buffer.setAttributes(0x88);
    EXPECT_TRUE(buffer.isDeleted());
    EXPECT_TRUE(buffer.isArchived());
    buffer.setAttributes(0x77);
    EXPECT_FALSE(buffer.isDeleted());
    EXPECT_FALSE(buffer.isArchived());
}

TEST(PalmRecordBuffer, NeverTrustsASizeThatComesFromTheDevice) {
    PalmRecordBuffer buffer;
    RawRecordInfo& raw = buffer.rawForCall();
    raw.recordSize = 0xFFFFFFFF;
    raw.bufferSize = 0xFFFF;
    raw.buffer = nullptr;
    buffer.afterDeviceCall();
    EXPECT_EQ(buffer.size(), 1024U);
    EXPECT_EQ(buffer.capacity(), 1024U);
    EXPECT_EQ(buffer.byteAt(1023), 0);
    EXPECT_FALSE(buffer.holdsAll());
    EXPECT_EQ(textRaisedBy([&] { buffer.growForDevice(); }), "Buffer length exceeded.");
}

} // namespace
} // namespace tsr
