#include "handheld/pdbFile.h"

#include <gtest/gtest.h>

#include "handheld/Handheld.h"
#include "handheld/HandheldError.h"
#include "support/bytes.h"

namespace tsr {
namespace {

using test::bytes;
using Bytes = std::vector<std::uint8_t>;

// "Memo" with an application info block, a sort info block and four records.
const char* const header =
    "4D 65 6D 6F 00 00 00 00 00 00 00 00 00 00 00 00 " // name, NUL, and what lay behind it
    "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 2A "
    "00 08 00 01 "                                   // attributes: to be backed up; version
    "B8 00 00 01 B8 00 00 02 "                       // created, modified
    "00 00 00 00 00 00 00 09 "                       // never backed up; modification number
    "00 00 00 70 00 00 00 73 "                       // application info at 112, sort info at 115
    "44 41 54 41 6D 65 6D 6F "                       // "DATA", "memo"
    "00 00 12 34 00 00 00 00 "                       // seed; no further list
    "00 04 ";                                        // records
const char* const list = "00 00 00 74 51 00 12 01 "  // at 116: dirty, secret, category 1, id 0x1201
                         "00 00 00 76 80 00 12 02 "  // at 118: deleted
                         "00 00 00 76 C2 00 12 03 "  // at 118: archived and dirty, category 2
                         "00 00 00 77 00 00 12 04 "; // at 119
const char* const contents = "AB CD "                // gap
                             "41 42 43 "             // application info
                             "53 "                   // sort info
                             "61 00 "                // first record
                             "62 "                   // third
                             "63 64 65";             // fourth

Bytes wholeFile() { return bytes(std::string(header) + list + contents); }

TEST(PdbFile, ReadsHeaderBlocksAndRecords) {
    const HandheldDatabase database = parsePdb(wholeFile());
    const DatabaseHeader expected{"Memo", 8, 1, 0xB8000001, 0xB8000002, 0, 9, 0x44415441, 0x6D656D6F, 0x1234};
    EXPECT_EQ(database.header(), expected);
    EXPECT_EQ(database.appInfo(), bytes("41 42 43"));
    EXPECT_EQ(database.sortInfo(), bytes("53"));
    const std::vector<HandheldRecord> records = {
        {0x1201, 0x50, 1, {'a', 0}},
        {0x1202, 0x80, 0, {}},
        {0x1203, 0x48, 2, {'b'}}, // deleted with data in the file
        {0x1204, 0, 0, {'c', 'd', 'e'}},
    };
    EXPECT_EQ(database.records().all(), records);
    EXPECT_FALSE(database.isUnsaved());
}

TEST(PdbFile, GivesTheSameBytesBack) { EXPECT_EQ(toPdb(parsePdb(wholeFile())), wholeFile()); }

// The example of docs/handheld.md.
TEST(PdbFile, WritesADatabaseOfOurOwn) {
    Handheld handheld;
    handheld.clock = 1012998896; // 2002-02-06 12:34:56, which is 0xB886D370 seconds after 1904
    HandheldDatabase& database = handheld.create("MemoDB", 0x44415441, 0x6D656D6F, 8);
    database.putRecord({0x1201, 0x40, 2, {'H', 'i', 0}});
    DatabaseHeader known = database.header();
    known.uniqueIdSeed = 0x1201;
    database.setHeader(known);
    EXPECT_EQ(toPdb(database), bytes("4D 65 6D 6F 44 42 00 00 00 00 00 00 00 00 00 00 "
                                     "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
                                     "00 08 00 00 B8 86 D3 70 B8 86 D3 70 00 00 00 00 "
                                     "00 00 00 01 00 00 00 00 00 00 00 00 44 41 54 41 "
                                     "6D 65 6D 6F 00 00 12 01 00 00 00 00 00 01 00 00 "
                                     "00 58 42 00 12 01 00 00 48 69 00"));
}

TEST(PdbFile, GivesBackAFileWithoutBlocksOrRecords) {
    DatabaseHeader empty;
    empty.name = "Empty";
    Bytes file = toPdb(HandheldDatabase(empty));
    EXPECT_EQ(file.size(), 80U); // header and gap
    EXPECT_EQ(toPdb(parsePdb(file)), file);
    file.resize(78); // some files have no gap
    EXPECT_EQ(toPdb(parsePdb(file)), file);
}

TEST(PdbFile, ADeletedRecordHasNoDataInTheFile) {
    DatabaseHeader named;
    named.name = "A";
    HandheldDatabase database(named);
    database.putRecord({1, HandheldRecord::deleted, 0, {'x'}});
    EXPECT_EQ(parsePdb(toPdb(database)).records().all(), (std::vector<HandheldRecord>{{1, 0x80, 0, {}}}));
}

TEST(PdbFile, GivesFreshIdsToRecordsThatHaveNone) {
    Bytes file = wholeFile();
    for (std::size_t at : {83U, 84U, 85U, 107U, 108U, 109U}) file[at] = 0; // the first id and the last
    const HandheldDatabase database = parsePdb(file);
    EXPECT_EQ(database.records().at(0).id, 0x1235U); // behind the seed, 0x1234
    EXPECT_EQ(database.records().at(3).id, 0x1236U);
    EXPECT_EQ(database.header().uniqueIdSeed, 0x1236U);
    EXPECT_TRUE(database.isUnsaved());
}

TEST(PdbFile, RefusesEveryShortenedFile) {
    const Bytes file = wholeFile();
    for (std::size_t size = 0; size < 119; ++size) { // from 119 on only the last record is shorter
        SCOPED_TRACE(size);
        EXPECT_THROW(parsePdb(Bytes(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(size))),
                     HandheldError);
    }
}

TEST(PdbFile, RefusesDamage) {
    struct Row {
        const char* reason;
        std::size_t at;
        const char* damage;
    };
    const Row rows[] = {
        {"no name", 0, "00"},
        {"a name without an end", 4,
         "41 41 41 41 41 41 41 41 41 41 41 41 41 41 41 41 41 41 41 41 41 41 41 41 41 41 41 41"},
        {"resources", 32, "00 01"},
        {"application info within the list", 52, "00 00 00 6D"},
        {"application info behind the sort info", 52, "00 00 00 74"},
        {"sort info behind the records", 56, "00 00 00 75"},
        {"sort info behind the end", 56, "FF FF FF FF"},
        {"more records than the file holds", 76, "FF FF"},
        {"a record before its predecessor", 86, "00 00 00 73"},
        {"a record behind the end", 102, "00 00 00 7B"},
        {"an id twice", 91, "00 12 01"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.reason);
        Bytes file = wholeFile();
        const Bytes damage = bytes(row.damage);
        std::copy(damage.begin(), damage.end(), file.begin() + static_cast<std::ptrdiff_t>(row.at));
        EXPECT_THROW(parsePdb(file), HandheldError);
    }
}

TEST(PdbFile, RefusesARecordAboveTheLimit) {
    Bytes file = wholeFile();
    file.resize(119 + 65535); // the last record starts at 119
    EXPECT_EQ(parsePdb(file).records().at(3).data.size(), 65535U);
    file.push_back(0);
    EXPECT_THROW(parsePdb(file), HandheldError);
}

} // namespace
} // namespace tsr
