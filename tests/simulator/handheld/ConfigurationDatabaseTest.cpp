#include "handheld/ConfigurationDatabase.h"

#include <gtest/gtest.h>

#include "handheld/HandheldError.h"
#include "support/bytes.h"

namespace tsr {
namespace {

using test::bytes;

HandheldRecord onlyRecord(const Handheld& handheld, int category) {
    HandheldRecord found;
    int count = 0;
    handheld.find("VellumConfig")->records().forEach([&](const HandheldRecord& record) {
        if (record.category != category) return;
        found = record;
        ++count;
    });
    EXPECT_EQ(count, 1);
    return found;
}

TEST(ConfigurationDatabase, MakesWhatTheDeviceApplicationWouldMake) {
    Handheld handheld;
    ConfigurationDatabase configuration(handheld);
    const DatabaseHeader& header = handheld.find("VellumConfig")->header();
    EXPECT_EQ(header.creator, 0x54535241U);                     // "TSRA"
    EXPECT_EQ(header.type, 0x434E4647U);                        // "CNFG"
    EXPECT_EQ(onlyRecord(handheld, 6).data, bytes("00 00 00")); // three empty strings
    const std::uint32_t server = onlyRecord(handheld, 6).id;
    EXPECT_EQ(server, 1U);
    EXPECT_EQ(onlyRecord(handheld, 1).data, bytes("00 00 00 01 00 00 00 00"));
    for (int category : {2, 3, 4, 5, 7}) {
        SCOPED_TRACE(category);
        EXPECT_EQ(onlyRecord(handheld, category).data,
                  bytes("00 01 00 00 00 07 00 1E")); // a week back, 30 days on
    }
}

TEST(ConfigurationDatabase, WritesTheConnection) {
    Handheld handheld;
    ConfigurationDatabase configuration(handheld);
    const ConnectionChoice connection{0, 0, "Pat", "pw", "", "host", "80"};
    configuration.setConnection(connection);
    EXPECT_EQ(onlyRecord(handheld, 6).data, bytes("00 68 6F 73 74 00 38 30 00"));
    EXPECT_EQ(onlyRecord(handheld, 1).data, bytes("00 00 00 01 00 00 50 61 74 00 70 77 00"));
    EXPECT_EQ(ConfigurationDatabase(handheld).connection(), connection);
}

TEST(ConfigurationDatabase, WritesTheChoicesOfAnApplication) {
    Handheld handheld;
    ConfigurationDatabase configuration(handheld);
    const ApplicationChoice choice{NextReplication::Slow, 'S', 0, 258, 3};
    configuration.setApplication(7, choice);
    EXPECT_EQ(onlyRecord(handheld, 7).data, bytes("06 02 00 00 01 02 00 03"));
    EXPECT_EQ(ConfigurationDatabase(handheld).applications().at(7), choice);
}

TEST(ConfigurationDatabase, KeepsWhatItDoesNotKnow) {
    Handheld handheld;
    HandheldDatabase& database = handheld.create("VellumConfig", 0x434E4647, 0x54535241);
    database.putRecord({0x21, 0, 1, bytes("00 00 00 22 AA BB 00 00")});
    database.putRecord({0x22, 0, 6, bytes("4E 00 00 00")}); // server name "N"
    database.putRecord({0x23, 0, 2, bytes("02 01 CC DD 00 00 00 00")});
    ConfigurationDatabase configuration(handheld);
    EXPECT_EQ(database.records().find(0x21)->attributes, 0); // reading leaves it as it is
    ConnectionChoice connection = configuration.connection();
    connection.userName.push_back('P');
    configuration.setConnection(connection);
    ApplicationChoice choice = configuration.applications().at(2);
    choice.type = NextReplication::Fast;
    configuration.setApplication(2, choice);
    EXPECT_EQ(database.records().find(0x21)->data, bytes("00 00 00 22 AA BB 50 00 00"));
    EXPECT_EQ(database.records().find(0x22)->data, bytes("4E 00 00 00"));
    EXPECT_EQ(database.records().find(0x23)->data, bytes("05 01 CC DD 00 00 00 00"));
}

TEST(ConfigurationDatabase, MakesALostServerRecordAnew) {
    Handheld handheld;
    HandheldDatabase& database = handheld.create("VellumConfig", 0x434E4647, 0x54535241);
    database.putRecord({0x21, 0, 1, bytes("00 00 00 99 00 00 00 00")});
    ConfigurationDatabase configuration(handheld);
    EXPECT_EQ(database.records().find(0x21)->data, bytes("00 00 00 22 00 00 00 00"));
    EXPECT_EQ(database.records().find(0x22)->category, 6);
}

TEST(ConfigurationDatabase, RefusesDamagedRecords) {
    const std::pair<std::uint8_t, const char*> rows[] = {
        {1, "00 00 00"},                // a cut id
        {1, "00 00 00 00 00 00 41"},    // no NUL
        {1, "00 00 00 00 00 00 00"},    // no password
        {2, "07 01 00 00 00 00 00 00"}, // type 7
        {2, "02 00 00 00 00 00 00 00"}, // conflict rule 0
        {2, "02 03 00 00 00 00 00 00"},
        {2, "02 01 00 00 00 00 00"}, // cut
    };
    for (const auto& [category, data] : rows) {
        SCOPED_TRACE(data);
        Handheld handheld;
        handheld.create("VellumConfig", 0, 0).putRecord({1, 0, category, bytes(data)});
        EXPECT_THROW(ConfigurationDatabase{handheld}, HandheldError);
    }
}

TEST(ConfigurationDatabase, HidesThePassword) {
    Handheld handheld;
    ConfigurationDatabase configuration(handheld);
    configuration.setConnection({0, 0, "Pat", "secret", "", "", ""});
    const HandheldDatabase& database = *handheld.find("VellumConfig");
    EXPECT_EQ(withoutPassword(database, onlyRecord(handheld, 1)),
              bytes("00 00 00 01 00 00 50 61 74 00 2A 2A 2A 2A 2A 2A 2A 2A 00"));
    EXPECT_EQ(withoutPassword(database, onlyRecord(handheld, 6)), onlyRecord(handheld, 6).data);
    EXPECT_EQ(withoutPassword(database, {9, 0, 1, bytes("00 01")}), bytes("00 01"));
}

} // namespace
} // namespace tsr
