// Databases of handhelds that speak other languages, where names have bytes above 7F. A byte is what it is,
// in whatever character set the handheld shows it: on the wire it is the unit of equal value.
//
// A record comes back from Notes byte for byte when it is as the conduit writes it:
//   - of contacts, the phones fill the slots from the first one on, none of them has an empty line, and no
//     label comes twice. They stand in the order of "PalmListed", which is Fax, Work, Home, Main, Other,
//     Email, Pager, Mobile: Notes doesn't know the order of the slots;
//   - slots without a phone have the labels that are left, in the order Work, Home, Fax, Email, Mobile,
//   Pager,
//     Other, Main, and the one to display has a phone, or is the first where there is none;
//   - no text has its bit in the mask and is empty, and titles have no empty lines;
//   - of tasks, the priority is 1, 2, 3 or 5, as Notes has no 4;
//   - no line ends with CR.
// Another record shows the same when it comes back, and has this form. On the handheld that it came from it
// stays as it is.

#include <algorithm>

#include "handheld/CategoryTable.h"
#include "replication/ContactItems.h"
#include "replication/ReplicationTest.h"
#include "replication/TaskItems.h"
#include "support/bytes.h"

namespace tsr {
namespace {

using test::bytes;
using test::ItemKind;
using test::ItemReplica;
using test::Strings;
using testing::HasSubstr;

constexpr std::uint8_t ownCategory = 3; // behind the three that a new database has

struct DeviceRecord {
    const char* pairs;
    std::uint8_t category = 0;
    std::uint8_t attributes = 0;
};
using Records = std::vector<DeviceRecord>;

struct Language {
    const char* name;
    const char* category;  // bytes
    Records contacts;      // phone flags, field mask, company offset, texts
    Records usualContacts; // with the labels that the handheld gives a new one: Work, Home, Fax, Other, Email
    Records tasks;
};

const std::vector<Language>& languages() {
    static const std::vector<Language> all = {
        // Windows-1252
        {"German",
         "42 FC 72 6F", // Büro
         {
             {"00 17 41 02 00 00 22 1F 0F " // Fax and Work, which is displayed; then Home, Email, Mobile
              "4D FC 6C 6C 65 72 00 "       // Müller
              "4A FC 72 67 65 6E 00 "       // Jürgen
              "47 72 6F DF 20 26 20 53 F6 68 6E 65 00 "          // Groß & Söhne
              "30 32 32 31 20 31 32 00 "                         // fax: 0221 12
              "30 32 32 31 20 33 34 00 "                         // work: 0221 34
              "4B F6 6C 6E 00 "                                  // Köln
              "47 65 73 63 68 E4 66 74 73 66 FC 68 72 65 72 00", // title: Geschäftsführer
              3},
             {"00 07 42 10 00 04 00 01 00 "       // no phone: Work, Home, Fax, Email, Mobile
              "D6 7A 74 FC 72 6B 00 "             // Öztürk
              "53 74 72 61 DF 65 0A 54 FC 72 00", // Straße\nTür
              0},
         },
         {
             {"00 14 32 10 00 00 00 51 00 " // Home in slot 2, Other in slot 4 of the labels of a new contact
              "57 65 69 DF 00 "             // Weiß
              "30 32 32 31 20 35 00 "       // home
              "30 32 32 31 20 36 00",       // other
              0},
         },
         {
             {"C4 64 82 46 75 DF 62 61 6C 6C 20 66 FC 72 20 4A F6 72 67 00 53 63 68 6C FC 73 73 65 6C 00", 3,
              0}, // 2002-03-04, completed, 2: Fußball für Jörg, Schlüssel
             {"FF FF 01 DC 62 75 6E 67 00 00", 0, HandheldRecord::secret}, // 1: Übung
         }},
        // Windows-1252
        {"French",
         "52 E9 75 6E 69 6F 6E", // Réunion
         {
             {"00 14 20 71 00 00 41 1B 00 " // Home and Mobile, which is displayed; then Work, Fax, Email
              "4C 65 66 E8 76 72 65 00 "    // Lefèvre
              "48 E9 6C E8 6E 65 00 "       // Hélène
              "30 31 20 34 32 00 "          // home: 01 42
              "30 36 20 31 32 00 "          // mobile: 06 12
              "31 32 2C 20 72 75 65 20 64 65 20 6C 27 C9 67 6C 69 73 65 00 " // 12, rue de l'Église
              "6E E9 20 E0 20 4E EE 6D 65 73 00",                            // custom: né à Nîmes
              3},
             {"00 07 42 10 00 00 00 04 01 "                            // no phone; the company is at 1
              "53 6F 63 69 E9 74 E9 20 47 E9 6E E9 72 69 71 75 65 00", // company alone
              1},
         },
         {
             {"00 04 32 10 00 00 00 29 00 " // Work in slot 1, Fax in slot 3
              "C7 65 6C 69 6B 00 "          // Çelik
              "30 31 20 31 00 "             // work
              "30 31 20 32 00",             // fax
              0},
         },
         {
             {"FF FF 05 43 61 66 E9 20 E0 20 4F 72 6C E9 61 6E 73 00 64 E9 6A E0 0A 76 75 00", 0,
              0}, // 5: Café à Orléans, déjà\nvu
         }},
        // Shift-JIS, where the second byte of a character can be that of a backslash or a bar
        {"Japanese",
         "8E 64 8E 96", // "work"
         {
             {"00 37 43 10 00 04 02 FF 0B " // Work, Home, Other, Email, which is displayed, Mobile
              "8E 52 93 63 00 "             // last name
              "91 BE 98 59 00 "             // first name
              "89 EF 8E D0 00 "             // company
              "30 33 20 31 00 "             // work
              "30 33 20 32 00 "             // home
              "30 33 20 33 00 "             // other
              "61 40 62 00 "                // email
              "30 39 30 20 34 00 "          // mobile
              "93 8C 8B 9E 00 "             // city
              "95 5C 83 5C 83 7C 00",       // note: 95 5C, 83 5C, 83 7C
              3},
             {"00 07 42 10 00 00 00 01 00 " // no phone
              "D4 CF C0 DE 00",             // half-width kana, one byte each
              0},
         },
         {
             {"00 14 32 10 00 00 00 39 00 " // Work, Home, which is displayed, Fax
              "97 E9 96 D8 00 "             // last name
              "30 33 20 31 00 "             // work
              "30 33 20 32 00 "             // home
              "30 33 20 33 00",             // fax
              0},
         },
         {
             {"CB 98 03 89 EF 8B 63 00 83 5C 00", 3,
              HandheldRecord::secret}, // 2005-12-24, 3: "meeting", 83 5C
         }},
        // Windows-1250
        {"Polish",
         "57 B3 61 73 6E 65", // Własne
         {
             {"00 07 21 04 00 00 06 0B 00 " // Email; then Work, Home, Fax, Mobile
              "AF F3 B3 E6 00 "             // Żółć
              "A3 75 6B 61 73 7A 00 "       // Łukasz
              "61 40 62 00 "                // email
              "4B 72 61 6B F3 77 00 "       // Kraków
              "8C 6C B9 73 6B 00",          // Śląsk
              3},
             {"00 12 10 76 00 00 00 19 00 " // Pager and Mobile, which is displayed; then Work, Home, Fax
              "57 69 9C 6E 69 65 77 73 6B 61 00 " // Wiśniewska
              "31 32 20 31 00 "                   // pager
              "31 32 20 32 00",                   // mobile
              2},
         },
         {
             {"00 24 32 10 00 00 00 29 00 "    // Work in slot 1, Fax in slot 3, which is displayed
              "57 F3 6A 63 69 6B 00 "          // Wójcik
              "31 32 20 31 0A 31 32 20 32 00 " // work, two of them
              "31 32 20 33 00",                // fax
              0},
         },
         {
             {"FF FF 81 5A 61 BF F3 B3 E6 20 67 EA 9C 6C B9 00 00", 0, 0}, // completed, 1: Zażółć gęślą
         }},
    };
    return all;
}

class Languages : public test::ReplicationTest {
protected:
    // From the first handheld to an empty server, and to a fresh handheld from there.
    void expectSameBytes(const ItemKind& kind, const Language& language, const Records& records) {
        for (const NextReplication type : {NextReplication::Reset, NextReplication::Clear}) {
            const Strings before = send(kind, language, records);
            replaceHandheld();
            fetch(kind, type);
            EXPECT_EQ(contentsOf(kind), before);
        }
    }

    // The same, for records that come back in another form.
    void expectSameLines(const ItemKind& kind, const Language& language, const Records& records) {
        send(kind, language, records);
        const Strings lines = ItemReplica(kind, handheld, office).onDevice();
        replaceHandheld();
        fetch(kind, NextReplication::Reset);
        EXPECT_EQ(ItemReplica(kind, handheld, office).onDevice(), lines);
    }

    // Gives what the handheld holds afterwards, which is what it held before.
    Strings send(const ItemKind& kind, const Language& language, const Records& records) {
        connectAfresh();
        ItemReplica replica(kind, handheld, office);
        replica.configure(NextReplication::Normal);
        const std::vector<std::uint8_t> name = bytes(language.category);
        CategoryTable(replica.database()).rename(ownCategory, std::string(name.begin(), name.end()));
        for (const DeviceRecord& record : records)
            replica.database().addRecord(bytes(record.pairs), record.category, record.attributes);
        Strings before = contentsOf(kind);
        replica.sync();
        replica.sync();
        EXPECT_EQ(contentsOf(kind), before);
        EXPECT_EQ(replica.documents().size(), records.size());
        return before;
    }

    // A clear makes a database without categories, which come as the application is started.
    void fetch(const ItemKind& kind, NextReplication type) {
        ItemReplica replica(kind, handheld, office);
        replica.configure(type);
        replica.hotSync();
        if (type == NextReplication::Clear) replica.startApplication();
        replica.sync();
    }

    // "category: bytes", behind a star for a secret record, sorted: records come in the order of Notes, under
    // ids and in categories of their own. A task without a category comes to one without a name.
    Strings contentsOf(const ItemKind& kind) {
        ItemReplica replica(kind, handheld, office);
        Strings lines;
        for (const HandheldRecord& record : replica.database().records().all()) {
            const bool isSecret = (record.attributes & HandheldRecord::secret) != 0;
            const std::string category = record.category == 0 ? "" : replica.categoryName(record.category);
            lines.push_back((isSecret ? "*" : "") + category + ": " + test::hexText(record.data));
        }
        std::sort(lines.begin(), lines.end());
        return lines;
    }

    const test::ContactItems contacts;
    const test::TaskItems tasks;
};

TEST_F(Languages, ContactsComeBackByteForByte) {
    for (const Language& language : languages()) {
        SCOPED_TRACE(language.name);
        expectSameBytes(contacts, language, language.contacts);
    }
}

TEST_F(Languages, TasksComeBackByteForByte) {
    for (const Language& language : languages()) {
        SCOPED_TRACE(language.name);
        expectSameBytes(tasks, language, language.tasks);
    }
}

TEST_F(Languages, OtherContactsComeBackShowingTheSame) {
    for (const Language& language : languages()) {
        SCOPED_TRACE(language.name);
        expectSameLines(contacts, language, language.usualContacts);
    }
}

// Its phones fill the first slots in the order of "PalmListed": Home, Other, and free ones for Work, Fax,
// Email.
TEST_F(Languages, PhonesComeBackInTheFirstSlots) {
    send(contacts, languages()[0], languages()[0].usualContacts);
    replaceHandheld();
    fetch(contacts, NextReplication::Reset);
    EXPECT_THAT(contentsOf(contacts), testing::ElementsAre(": 00 04 20 31 00 00 00 19 00 57 65 69 DF 00 "
                                                           "30 32 32 31 20 35 00 30 32 32 31 20 36 00"));
}

TEST_F(Languages, TheFourthPriorityComesBackAsTheFifth) {
    expectSameLines(tasks, languages()[0], {{"FF FF 04 DC 00 00"}}); // "Ü"
    EXPECT_THAT(contentsOf(tasks), testing::ElementsAre(": FF FF 05 DC 00 00"));
}

// German bytes are those of their characters.
TEST_F(Languages, NotesShowsWesternNames) {
    send(contacts, languages()[0], languages()[0].contacts);
    const Strings lines = ItemReplica(contacts, handheld, office).inNotes();
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_THAT(lines[0], HasSubstr("company=Gro\u00DF & S\u00F6hne display=work"));
    EXPECT_THAT(lines[0], HasSubstr("lastName=M\u00FCller"));
    EXPECT_THAT(lines[0], testing::EndsWith(" | B\u00FCro"));
    EXPECT_EQ(lines[1], "lastName=\u00D6zt\u00FCrk note=Stra\u00DFe/T\u00FCr | ");
}

} // namespace
} // namespace tsr
