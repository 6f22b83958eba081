#include "records/addressConversion.h"

#include <algorithm>

#include "foundation/lines.h"
#include "records/recordBytes.h"
#include "support/RandomText.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

using test::bytes;
using test::dataOf;
using test::fill;
using Strings = std::vector<std::string>;
using Entries = std::vector<PhoneEntry>;

PalmAddressRecord parsed(const std::string& pairs) {
    PalmRecordBuffer buffer;
    fill(buffer, pairs);
    return PalmAddressRecord(buffer, false);
}

std::vector<std::uint8_t> written(const PalmAddressRecord& record) {
    PalmRecordBuffer buffer;
    record.write(buffer);
    return dataOf(buffer);
}

// With one phone of each kind, by its own letter.
NotesAddressRecord withPhones(const std::string& kinds, const std::string& listed,
                              const std::string& preferred = {}) {
    NotesAddressRecord notes;
    for (const char kind : kinds)
        notes.phones[static_cast<std::size_t>(*labelOfPhoneLetter(kind))] = {std::string(1, kind)};
    notes.palmListed = listed;
    notes.palmPreferred = preferred;
    return notes;
}

// The letters of the phones in the order of slots.
std::string slots(const PalmAddressRecord& palm) {
    std::string letters;
    for (const PhoneEntry& entry : palm.phoneEntries()) {
        EXPECT_EQ(entry.values, Strings{std::string(1, phoneLetter(entry.label))});
        letters += phoneLetter(entry.label);
    }
    return letters;
}

TEST(AddressConversion, CopiesTheTexts) {
    NotesAddressRecord notes;
    std::string* const texts[] = {&notes.address,   &notes.city,     &notes.company, &notes.country,
                                  &notes.custom1,   &notes.custom2,  &notes.custom3, &notes.custom4,
                                  &notes.firstName, &notes.lastName, &notes.state,   &notes.zip,
                                  &notes.body};
    for (std::size_t i = 0; i < std::size(texts); ++i) *texts[i] = std::string(1, static_cast<char>('a' + i));
    notes.title = {"T", "t"};
    const PalmAddressRecord palm = toPalmAddressRecord(notes);
    EXPECT_EQ(palm.address + palm.city + palm.company + palm.country + palm.custom1 + palm.custom2
                  + palm.custom3 + palm.custom4 + palm.firstName + palm.lastName + palm.state + palm.zip
                  + palm.note,
              "abcdefghijklm");
    EXPECT_EQ(palm.title, (Strings{"T", "t"}));
    EXPECT_EQ(palm.category(), 0);
    const NotesAddressRecord back = toNotesAddressRecord(palm);
    EXPECT_EQ(back.address + back.city + back.company + back.country + back.custom1 + back.custom2
                  + back.custom3 + back.custom4 + back.firstName + back.lastName + back.state + back.zip
                  + back.body,
              "abcdefghijklm");
    EXPECT_EQ(back.title, (Strings{"T", "t"}));
    EXPECT_EQ(back.palmListed, "");
    EXPECT_EQ(back.palmPreferred, "W"); // of no phone at all
    EXPECT_TRUE(back.categories.empty());
}

TEST(AddressConversion, RemembersTheDisplayedPhone) {
    // Work "1" and Mobile "2", which is displayed; the labels of free slots are Main.
    const NotesAddressRecord notes = toNotesAddressRecord(parsed("00 15 55 70 00 00 00 18 00 31 00 32 00"));
    EXPECT_EQ(notes.phones[WorkPhone], Strings{"1"});
    EXPECT_EQ(notes.phones[MobilePhone], Strings{"2"});
    EXPECT_EQ(notes.palmListed, "WM");
    EXPECT_EQ(notes.palmPreferred, "M");
    // Back from Notes the free slots are Home, Fax and Email.
    EXPECT_EQ(written(toPalmAddressRecord(notes)), bytes("00 14 21 70 00 00 00 18 00 31 00 32 00"));
}

TEST(AddressConversion, FillsTheSlots) {
    const struct {
        const char* kinds;
        const char* listed;
        const char* slots;
    } rows[] = {
        {"WH", "WWH", "WH"},          // a letter counts once
        {"EM", "", "EM"},             // not listed: by the fallback order
        {"WHFOEmPM", "", "EWHFM"},    // of which five fit
        {"WHFOEmPM", "mOP", "mOPEW"}, // the listed ones first
        {"WHFOEm", "mO", "mOEWH"},
        {"WHFOEmPM", "PmOFHWEM", "PmOFH"}, // more than fit
        {"WHFOEmPM", "MPOmEFHW", "MPOmE"},
        {"WE", "MW", "WE"},     // listed, but there is none
        {"WE", "?xWhw-", "WE"}, // no letters of kinds
        {"", "WHF", ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << row.kinds << ' ' << row.listed);
        EXPECT_EQ(slots(toPalmAddressRecord(withPhones(row.kinds, row.listed))), row.slots);
    }
}

TEST(AddressConversion, DisplaysThePreferredPhone) {
    const struct {
        const char* kinds;
        const char* listed;
        const char* preferred;
        char displayed;
    } rows[] = {
        {"EM", "", "", 'E'}, // the first
        {"EM", "ME", "", 'M'},
        {"WH", "WH", "H", 'H'},
        {"WH", "WH", "P", 'W'},          // there is no pager
        {"WHFOEmPM", "WHFOE", "M", 'W'}, // there was no slot for it
        {"WH", "WH", "?", 'W'},
        {"", "", "M", 'W'},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << row.kinds << ' ' << row.preferred);
        EXPECT_EQ(
            phoneLetter(toPalmAddressRecord(withPhones(row.kinds, row.listed, row.preferred)).displayLabel()),
            row.displayed);
    }
}

TEST(AddressConversion, ListsKindsInOneOrder) {
    const std::pair<const char*, const char*> rows[] = {
        {"WHFOE", "FWHOE"}, {"MPEOm", "mOEPM"}, {"MW", "WM"}, {"m", "m"}, {"", ""},
    };
    for (const auto& [kinds, listed] : rows) {
        SCOPED_TRACE(kinds);
        EXPECT_EQ(toNotesAddressRecord(toPalmAddressRecord(withPhones(kinds, kinds))).palmListed, listed);
    }
}

TEST(AddressConversion, JoinsTheSlotsOfOneKind) {
    // Home "1", Work "2", Home "3" and "4".
    const NotesAddressRecord notes =
        toNotesAddressRecord(parsed("00 04 21 01 00 00 00 38 00 31 00 32 00 33 0A 34 00"));
    EXPECT_EQ(notes.phones[HomePhone], (Strings{"1", "3", "4"}));
    EXPECT_EQ(notes.phones[WorkPhone], Strings{"2"});
    EXPECT_EQ(notes.palmListed, "WH");
    EXPECT_EQ(notes.palmPreferred, "H");
}

TEST(AddressConversion, AKindThatIsNotListedReachesTheHandheldAndIsNotSent) {
    const NotesAddressRecord notes = withPhones("WP", "W");
    EXPECT_EQ(slots(toPalmAddressRecord(notes)), "WP");
    NotesItem item;
    notes.addTo(item, TimeZone());
    EXPECT_EQ(item.count("Work"), 1u);
    EXPECT_EQ(item.count("Pager"), 0u);
}

TEST(AddressConversion, ManyLettersAreNoTrouble) {
    EXPECT_EQ(slots(toPalmAddressRecord(withPhones("WM", std::string(1000000, 'M')))), "MW");
}

TEST(AddressConversion, AContactWithoutPhonesHasTheUsualLabels) {
    EXPECT_EQ(written(toPalmAddressRecord(NotesAddressRecord())), bytes("00 07 42 10 00 00 00 00 00"));
}

// The kinds of phone in the order in which they take slots.
std::string orderOfKinds(const NotesAddressRecord& notes) {
    std::string order;
    for (const char letter : notes.palmListed + "EWHFMPOm") {
        const auto label = labelOfPhoneLetter(letter);
        if (!label || notes.phones[static_cast<std::size_t>(*label)].empty()) continue;
        if (order.find(letter) == std::string::npos) order += letter;
    }
    return order.substr(0, 5);
}

NotesAddressRecord randomContact(std::uint32_t seed) {
    test::RandomText random(seed);
    NotesAddressRecord notes;
    for (std::string* text :
         {&notes.address, &notes.city, &notes.company, &notes.country, &notes.custom1, &notes.custom2,
          &notes.custom3, &notes.custom4, &notes.firstName, &notes.lastName, &notes.state, &notes.zip})
        *text = random.text(12);
    notes.body = random.text(300);
    notes.title = random.lines(3);
    for (Strings& values : notes.phones) values = random.lines(2);
    while (random.below(5) != 0) notes.palmListed += "WHFOEmPMx"[random.below(9)];
    if (random.flag()) notes.palmPreferred = "WHFOEmPMx"[random.below(9)];
    return notes;
}

// From Notes to the bytes of the handheld, and back: all is kept, but for phones without a slot.
TEST(AddressConversion, ARoundKeepsAContact) {
    for (std::uint32_t seed = 1; seed <= 5000; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        const NotesAddressRecord notes = randomContact(seed);
        PalmRecordBuffer buffer;
        toPalmAddressRecord(notes).write(buffer);
        const NotesAddressRecord back = toNotesAddressRecord(PalmAddressRecord(buffer, false));
        NotesAddressRecord expected = notes;
        const std::string kept = orderOfKinds(notes);
        expected.palmListed.clear();
        for (const char letter : std::string("FWHmOEPM")) {
            const bool keeps = kept.find(letter) != std::string::npos;
            if (keeps) expected.palmListed += letter;
            if (!keeps) expected.phones[static_cast<std::size_t>(*labelOfPhoneLetter(letter))].clear();
        }
        const bool displayed =
            !notes.palmPreferred.empty() && kept.find(notes.palmPreferred) != std::string::npos;
        if (!displayed) expected.palmPreferred = kept.empty() ? "W" : kept.substr(0, 1);
        NotesItem item;
        NotesItem expectedItem;
        back.addTo(item, TimeZone());
        expected.addTo(expectedItem, TimeZone());
        ASSERT_EQ(item, expectedItem);
        EXPECT_EQ(back.phones, expected.phones);
    }
}

} // namespace
} // namespace tsr
