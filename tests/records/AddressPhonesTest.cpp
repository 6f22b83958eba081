#include "records/AddressPhones.h"

#include "records/recordBytes.h"
#include "support/errors.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

using test::bytes;
using test::dataOf;
using test::fill;
using test::textRaisedBy;
using Strings = std::vector<std::string>;
using Entries = std::vector<PhoneEntry>;

// With what a record alone can reach.
class OpenPhones : public AddressPhones {
public:
    OpenPhones() = default;
    OpenPhones(const char* texts, std::uint32_t flags, std::uint32_t mask) {
        PalmRecordBuffer buffer;
        fill(buffer, texts);
        readPhones(buffer, flags, mask);
    }

    using AddressPhones::readPhones;
    using AddressPhones::writePhones;
};

// What writing gives: flags, mask and bytes.
struct Written {
    explicit Written(const OpenPhones& phones) {
        PalmRecordBuffer buffer;
        flags = phones.writePhones(buffer, mask);
        texts = dataOf(buffer);
    }

    std::uint32_t mask = 0;
    std::uint32_t flags;
    std::vector<std::uint8_t> texts;
};

OpenPhones phonesOf(const Entries& entries) {
    OpenPhones phones;
    for (const PhoneEntry& entry : entries) phones.addPhones(entry.label, entry.values);
    return phones;
}

TEST(AddressPhones, GoBothWays) {
    const struct {
        const char* texts;
        std::uint32_t mask;
        std::uint32_t flags;
        Entries entries;
        std::int32_t displayLabel;
    } rows[] = {
        // Free slots are labelled Work, Home, Fax, Email, Mobile, Pager, Other, Main, as far as a label is
        // free.
        {"", 0, 0x074210, {}, 0},
        {"31 00 32 00", 0x18, 0x142170, {{0, {"1"}}, {7, {"2"}}}, 7},
        {"31 00", 0x08, 0x042105, {{5, {"1"}}}, 5},
        {"31 0A 32 00", 0x08, 0x074201, {{1, {"1", "2"}}}, 1},
        {"31 00 32 00 33 00 34 00 35 00",
         0xF8,
         0x434567,
         {{7, {"1"}}, {6, {"2"}}, {5, {"3"}}, {4, {"4"}}, {3, {"5"}}},
         3},
        // One label in two slots stays in two.
        {"31 00 32 00", 0x18, 0x042100 | 0x000000, {{0, {"1"}}, {0, {"2"}}}, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.flags);
        const OpenPhones phones(row.texts, row.flags, row.mask);
        EXPECT_EQ(phones.phoneEntries(), row.entries);
        EXPECT_EQ(phones.displayLabel(), row.displayLabel);
        const Written written(phones);
        EXPECT_EQ(written.texts, bytes(row.texts));
        EXPECT_EQ(written.mask, row.mask);
        EXPECT_EQ(written.flags, row.flags);
    }
}

TEST(AddressPhones, LoseEmptyLinesAndEmptySlots) {
    // Slot 1 "1", LF, LF, "2"; slot 2 empty; slot 3 two line feeds; slot 5 "3".
    const OpenPhones phones("31 0A 0A 32 00 00 0A 0A 00 33 00", 0x465432, 0xB8);
    EXPECT_EQ(phones.phoneEntries(), (Entries{{2, {"1", "2"}}, {6, {"3"}}}));
    EXPECT_EQ(phones.displayLabel(), 6); // of slot 5
    const Written written(phones);
    EXPECT_EQ(written.texts, bytes("31 0A 32 00 33 00"));
    EXPECT_EQ(written.mask, 0x18u);
    EXPECT_EQ(written.flags, 0x141062u); // Fax, Pager, then Work, Home, Email; the second is displayed
}

TEST(AddressPhones, TheDisplayIndexNamesASlot) {
    const std::pair<std::uint32_t, std::int32_t> rows[] = {
        {0, 3}, {1, 4}, {2, 5}, {3, 6}, {4, 7}, {5, 7}, {15, 7}, // all that is too high names slot 5
    };
    for (const auto& [index, label] : rows) {
        SCOPED_TRACE(index);
        EXPECT_EQ(OpenPhones("", 0x76543 | index << 20, 0).displayLabel(), label); // of an unused slot, too
        EXPECT_EQ(OpenPhones("", 0xFF076543 | index << 20, 0).displayLabel(),
                  label); // the top bits don't count
    }
}

TEST(AddressPhones, TheDisplayOfASlotWithoutAPhoneIsLost) {
    const OpenPhones phones("31 00", 0x274210, 0x08); // the label of slot 3 is Fax
    EXPECT_EQ(phones.displayLabel(), 2);
    EXPECT_EQ(Written(phones).flags, 0x074210u);
}

TEST(AddressPhones, RefuseALabelOfATextOrOfTheDisplayThatThereIsNot) {
    const std::string text = "The phone label identifier (8) is invalid.";
    EXPECT_EQ(textRaisedBy([] { OpenPhones("31 00", 0x074218, 0x08); }), text);
    EXPECT_EQ(textRaisedBy([] { OpenPhones("31 00", 0x074280, 0x10); }), text);
    EXPECT_EQ(textRaisedBy([] { OpenPhones("", 0x074218, 0); }), text); // displayed
    EXPECT_EQ(textRaisedBy([] { OpenPhones("", 0x1742F0, 0); }),
              "The phone label identifier (15) is invalid.");
    // A slot that is neither may have any.
    EXPECT_TRUE(OpenPhones("", 0x0FFFF0, 0).phoneEntries().empty());
    EXPECT_TRUE(OpenPhones("00 0A 00", 0x0742F8 | 4 << 20, 0x18).phoneEntries().empty());
}

TEST(AddressPhones, RefuseATextWithoutAnEnd) {
    const std::string text = "Null terminator not found in string.";
    EXPECT_EQ(textRaisedBy([] { OpenPhones("", 0, 0x08); }), text);
    EXPECT_EQ(textRaisedBy([] { OpenPhones("31 00 32", 0x10, 0x18); }), text);
}

TEST(AddressPhones, AreAddedToTheEntryOfTheirLabel) {
    const OpenPhones phones = phonesOf({{7, {"1"}}, {0, {"2", "3"}}, {4, {}}, {7, {"4"}}});
    EXPECT_EQ(phones.phoneEntries(), (Entries{{7, {"1", "4"}}, {0, {"2", "3"}}}));
    EXPECT_EQ(phones.phones(7), (Strings{"1", "4"}));
    EXPECT_EQ(phones.phones(4), Strings{});
    EXPECT_TRUE(phones.hasPhone(0));
    EXPECT_FALSE(phones.hasPhone(4)); // no values, no entry
    EXPECT_EQ(phones.firstPhoneLabel(), 7);
    EXPECT_EQ(OpenPhones().firstPhoneLabel(), 0);
}

TEST(AddressPhones, GiveTheValuesOfAllEntriesOfALabel) {
    const OpenPhones phones("31 00 32 00 33 0A 34 00", 0x042101, 0x38); // Home, Work, Home
    EXPECT_EQ(phones.phones(1), (Strings{"1", "3", "4"}));
    EXPECT_EQ(phones.phones(0), Strings{"2"});
}

TEST(AddressPhones, TakeNothingMoreWhenThereAreFive) {
    const Entries five = {{0, {"1"}}, {1, {"2"}}, {2, {"3"}}, {3, {"4"}}, {4, {"5"}}};
    OpenPhones phones = phonesOf(five);
    phones.addPhones(5, {"6"});
    phones.addPhones(0, {"7"}); // not even for a label that is there
    EXPECT_EQ(phones.phoneEntries(), five);
}

TEST(AddressPhones, AnEntryWithoutATextTakesNoSlotAndShiftsTheDisplay) {
    OpenPhones phones = phonesOf({{4, {""}}, {7, {"", "1", ""}}});
    phones.setDisplayLabel(7);
    const Written written(phones);
    EXPECT_EQ(written.texts, bytes("31 00"));
    EXPECT_EQ(written.mask, 0x08u);
    EXPECT_EQ(written.flags, 0x142107u); // 1 is its entry; its text is in the first slot
}

TEST(AddressPhones, ADisplayThatNoEntryHasIsTheFirst) {
    OpenPhones phones = phonesOf({{4, {"1"}}, {7, {"2"}}});
    phones.setDisplayLabel(6);
    EXPECT_EQ(Written(phones).flags >> 20, 0u);
}

TEST(AddressPhones, CheckADisplayThatIsSet) {
    OpenPhones phones;
    phones.setDisplayLabel(7);
    for (const std::int32_t label : {8, -1}) {
        EXPECT_EQ(textRaisedBy([&] { phones.setDisplayLabel(label); }),
                  "The phone label identifier (" + std::to_string(label) + ") is invalid.");
    }
    EXPECT_EQ(phones.displayLabel(), 7);
}

TEST(AddressPhones, AreDisplayedByTheFirstLetter) {
    const std::pair<const char*, std::int32_t> rows[] = {
        {"M", 7},  {"E", 4}, {"EM", 4}, {"", 4}, // the first phone
        {"P", 4},                                // there is no pager
        {"PM", 4},                               // and the letters behind it don't count
        {"X", 4},  {"e", 4}, {"m", 4},
    };
    for (const auto& [letters, label] : rows) {
        SCOPED_TRACE(letters);
        OpenPhones phones = phonesOf({{4, {"1"}}, {7, {"2"}}});
        phones.setDisplayLabel(1);
        phones.setDisplayFromLetter(letters);
        EXPECT_EQ(phones.displayLabel(), label);
    }
    OpenPhones none;
    none.setDisplayLabel(1);
    none.setDisplayFromLetter("M");
    EXPECT_EQ(none.displayLabel(), 0);
}

} // namespace
} // namespace tsr
