#include "records/PalmAddressRecord.h"

#include <array>

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
using Strings = std::vector<std::string>;

// All fields: flags, mask, the company 5 bytes behind its offset, and 19 texts of one letter each.
constexpr char full[] = "00 23 45 67 00 07 FF FF 05 4C 00 46 00 43 00 31 00 32 00 33 00 34 00 35 00 "
                        "41 00 63 00 53 00 5A 00 59 00 54 00 61 00 62 00 64 00 65 00 4E 00";

TEST(PalmAddressRecord, TakesEachFieldFromItsPlace) {
    PalmRecordBuffer buffer;
    fill(buffer, "00 03 45 67 00 07 FF FF 00 4C 00 46 00 43 00 31 00 32 00 33 00 34 00 35 00 "
                 "41 00 63 00 53 00 5A 00 59 00 54 0A 0A 74 00 61 00 62 00 64 00 65 00 4E 0D 0A 00");
    const PalmAddressRecord record(buffer, false);
    EXPECT_EQ(record.lastName, "L");
    EXPECT_EQ(record.firstName, "F");
    EXPECT_EQ(record.company, "C");
    EXPECT_EQ(record.phoneEntries(),
              (std::vector<PhoneEntry>{{7, {"1"}}, {6, {"2"}}, {5, {"3"}}, {4, {"4"}}, {3, {"5"}}}));
    EXPECT_EQ(record.displayLabel(), 7);
    EXPECT_EQ(record.address, "A");
    EXPECT_EQ(record.city, "c");
    EXPECT_EQ(record.state, "S");
    EXPECT_EQ(record.zip, "Z");
    EXPECT_EQ(record.country, "Y");
    EXPECT_EQ(record.title, (Strings{"T", "t"}));
    EXPECT_EQ(record.custom1, "a");
    EXPECT_EQ(record.custom2, "b");
    EXPECT_EQ(record.custom3, "d");
    EXPECT_EQ(record.custom4, "e");
    EXPECT_EQ(record.note, "N\r\n"); // as it is
}

TEST(PalmAddressRecord, GoesBothWays) {
    const struct {
        const char* pairs;
        std::uint32_t crc; // CRC-16/CCITT-FALSE of these bytes, as any table of it gives
    } rows[] = {
        {full, 0x7BA0},
        {"00 07 42 10 00 00 00 00 00", 0x78E1},                // nothing at all
        {"00 14 21 70 00 00 00 18 00 31 00 32 00", 0x9156},    // Work and Mobile, which is displayed
        {"00 07 42 10 00 00 00 04 01 41 43 6D 65 00", 0x0A0F}, // the company "ACme" right behind its offset
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.pairs);
        PalmRecordBuffer buffer;
        fill(buffer, row.pairs);
        buffer.setCategoryId(3);
        const PalmAddressRecord record(buffer, true);
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

TEST(PalmAddressRecord, IsWrittenBehindWhatIsThere) {
    PalmAddressRecord record;
    record.lastName = "Lee";
    record.company = "Acme";
    PalmRecordBuffer buffer;
    buffer.appendWord(0x0102);
    PalmRecordBuffer alone;
    EXPECT_EQ(record.write(buffer), record.write(alone));
    EXPECT_EQ(dataOf(alone), bytes("00 07 42 10 00 00 00 05 05 4C 65 65 00 41 63 6D 65 00"));
    EXPECT_EQ(dataOf(buffer), bytes("01 02 00 07 42 10 00 00 00 05 05 4C 65 65 00 41 63 6D 65 00"));
}

TEST(PalmAddressRecord, TheCompanyOffsetKeepsItsLowByte) {
    const std::pair<std::size_t, std::uint8_t> rows[] = {
        {253, 0xFF}, // 1, the name, and its NUL
        {254, 0x00},
        {255, 0x01},
        {1000, 0xEA}, // 1002
    };
    for (const auto& [length, offset] : rows) {
        SCOPED_TRACE(length);
        PalmAddressRecord record;
        record.lastName = std::string(length, 'L');
        record.company = "C";
        PalmRecordBuffer buffer;
        record.write(buffer);
        EXPECT_EQ(buffer.byteAt(8), offset);
        EXPECT_EQ(PalmAddressRecord(buffer, false).company, "C"); // nobody reads it
    }
}

TEST(PalmAddressRecord, NeitherReadsNorSetsTheSecretAttribute) {
    PalmRecordBuffer buffer;
    fill(buffer, full);
    buffer.setAttributes(0x10);
    const PalmAddressRecord record(buffer, false);
    PalmRecordBuffer written;
    record.write(written);
    EXPECT_EQ(written.attributes(), 0);
    written.setAttributes(0x10);
    record.write(written);
    EXPECT_EQ(written.attributes(), 0x10);
}

TEST(PalmAddressRecord, IsDescribedByItsNames) {
    const std::array<const char*, 3> rows[] = {
        {"Lee", "Pat", "Lee, Pat"}, {"Lee", "", "Lee, "}, {"", "Pat", ", Pat"}, {"", "", ", "}};
    for (const auto& [lastName, firstName, description] : rows) {
        PalmAddressRecord record;
        record.lastName = lastName;
        record.firstName = firstName;
        EXPECT_EQ(record.description(), description);
    }
}

TEST(PalmAddressRecord, RefusesARecordCutShortAtEachLength) {
    const std::vector<std::uint8_t> whole = bytes(full);
    for (std::size_t length = 0; length < whole.size(); ++length) {
        SCOPED_TRACE(length);
        PalmRecordBuffer buffer;
        buffer.appendBytes(whole.data(), length);
        const char* const text = length < 8  ? "Buffer underun occurred when reading a 32 bit integer."
                               : length == 8 ? "Buffer underun occurred when reading a 8 bit integer."
                                             : "Null terminator not found in string.";
        EXPECT_EQ(textRaisedBy([&] { PalmAddressRecord(buffer, false); }), text);
    }
}

TEST(PalmAddressRecord, RefusesBadBytes) {
    const std::pair<const char*, const char*> rows[] = {
        {"00 07 42 10 00 00 00 00 00 00", "Palm record has excess data."},
        {"00 07 42 10 00 00 00 01 00 4C 00 00", "Palm record has excess data."},
        // Bits above 18 stand for no text.
        {"00 07 42 10 00 08 00 00 00 4C 00", "Palm record has excess data."},
        {"00 07 42 18 00 00 00 08 00 31 00", "The phone label identifier (8) is invalid."}, // with a text
        {"00 37 92 10 00 00 00 00 00", "The phone label identifier (9) is invalid."},       // displayed
    };
    for (const auto& [pairs, text] : rows) {
        SCOPED_TRACE(pairs);
        PalmRecordBuffer buffer;
        fill(buffer, pairs);
        EXPECT_EQ(textRaisedBy([&] { PalmAddressRecord(buffer, false); }), text);
    }
}

TEST(PalmAddressRecord, ChecksACategoryThatIsSet) {
    PalmAddressRecord record;
    record.setCategory(15);
    EXPECT_EQ(textRaisedBy([&] { record.setCategory(16); }),
              "The specified Palm category value (16) is not valid.");
    EXPECT_EQ(record.category(), 15);
}

TEST(PalmAddressRecord, RefusesToWriteWhatNoRecordCanHold) {
    PalmAddressRecord record;
    record.note = std::string(65535 - 10, 'a');
    PalmRecordBuffer largest;
    record.write(largest);
    EXPECT_EQ(largest.size(), 65535u);
    record.note += 'a';
    PalmRecordBuffer buffer;
    EXPECT_EQ(textRaisedBy([&] { record.write(buffer); }), "Buffer length exceeded.");
}

// The lines of a text that aren't empty, one behind the other.
std::string withoutEmptyLines(const std::string& text) {
    std::string result;
    for (const char character : text) {
        if (character != '\n' || (!result.empty() && result.back() != '\n')) result += character;
    }
    if (!result.empty() && result.back() == '\n') result.pop_back();
    return result;
}

// A record as the handheld may have it, and what becomes of it when it is read and written.
class RandomRecord {
public:
    explicit RandomRecord(std::uint32_t seed) : random_(seed) {
        std::array<std::string, 19> texts;
        for (std::uint32_t bit = 0; bit < 19; ++bit) {
            if (random_.flag()) {
                mask_ |= 1u << bit;
                texts[bit] = random_.text(bit == 18 ? 300 : 12);
            }
        }
        for (std::uint32_t& label : labels_) label = random_.below(8);
        display_ = random_.below(16);
        append(read, labels_, display_, mask_, 0x5A); // nobody reads the company's offset
        appendTexts(read, texts, mask_);
        rewrite(texts);
    }

    std::vector<std::uint8_t> read;
    std::vector<std::uint8_t> written;

private:
    using Labels = std::array<std::uint32_t, 5>;

    static void append(std::vector<std::uint8_t>& data, const Labels& labels, std::uint32_t display,
                       std::uint32_t mask, std::size_t companyOffset) {
        data = {0,
                static_cast<std::uint8_t>(display << 4 | labels[4]),
                static_cast<std::uint8_t>(labels[3] << 4 | labels[2]),
                static_cast<std::uint8_t>(labels[1] << 4 | labels[0]),
                0,
                static_cast<std::uint8_t>(mask >> 16),
                static_cast<std::uint8_t>(mask >> 8),
                static_cast<std::uint8_t>(mask),
                static_cast<std::uint8_t>(companyOffset)};
    }

    static void appendTexts(std::vector<std::uint8_t>& data, const std::array<std::string, 19>& texts,
                            std::uint32_t mask) {
        for (std::uint32_t bit = 0; bit < 19; ++bit) {
            if ((mask >> bit & 1) == 0) continue;
            data.insert(data.end(), texts[bit].begin(), texts[bit].end());
            data.push_back(0);
        }
    }

    // Empty lines go, phones move up, free slots get the labels that are left, and empty texts lose their
    // bit.
    void rewrite(std::array<std::string, 19> texts) {
        const std::uint32_t displayed = labels_[std::min(display_, 4u)];
        Labels labels{};
        std::uint32_t display = 0;
        std::uint32_t used = 0;
        bool found = false;
        for (std::uint32_t slot = 0; slot < 5; ++slot) {
            const std::string text = withoutEmptyLines(texts[3 + slot]);
            texts[3 + slot].clear();
            if (text.empty()) continue;
            texts[3 + used] = text;
            labels[used] = labels_[slot];
            if (labels_[slot] == displayed && !found) {
                display = used;
                found = true;
            }
            ++used;
        }
        std::uint32_t filled = used;
        for (const std::uint32_t label : {0u, 1u, 2u, 4u, 7u, 6u, 3u, 5u}) {
            const auto end = labels.begin() + used;
            if (filled < 5 && std::find(labels.begin(), end, label) == end) labels[filled++] = label;
        }
        texts[13] = withoutEmptyLines(texts[13]);
        std::uint32_t mask = 0;
        for (std::uint32_t bit = 0; bit < 19; ++bit) mask |= texts[bit].empty() ? 0 : 1u << bit;
        std::size_t companyOffset = 0;
        if (!texts[2].empty()) {
            companyOffset = 1;
            for (const std::string& name : {texts[0], texts[1]})
                companyOffset += name.empty() ? 0 : name.size() + 1;
        }
        append(written, labels, display, mask, companyOffset);
        appendTexts(written, texts, mask);
    }

    test::RandomText random_;
    std::uint32_t mask_ = 0;
    Labels labels_;
    std::uint32_t display_;
};

TEST(PalmAddressRecord, WhatParsesIsWrittenWithoutWhatIsEmpty) {
    for (std::uint32_t seed = 1; seed <= 5000; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        const RandomRecord random(seed);
        PalmRecordBuffer buffer;
        fill(buffer, random.read);
        PalmRecordBuffer written;
        const std::uint16_t crc = PalmAddressRecord(buffer, false).write(written);
        ASSERT_EQ(test::hexText(dataOf(written)), test::hexText(random.written));
        // From there on it is written as it is.
        const PalmAddressRecord again(written, false);
        EXPECT_EQ(again.crc(), crc);
        PalmRecordBuffer rewritten;
        again.write(rewritten);
        ASSERT_EQ(dataOf(rewritten), random.written);
    }
}

} // namespace
} // namespace tsr
