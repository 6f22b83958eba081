#include "tessera/Store.h"

#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "tessera/TesseraError.h"

namespace tsr {
namespace {

User named(const std::string& name) {
    User user;
    user.name = name;
    user.zoneName = "UTC";
    return user;
}

class StoreTest : public ::testing::Test {
protected:
    User add(const std::string& name) {
        store.addUser(named(name), "hash of " + name);
        return *store.findUser(name);
    }

    Store store = Store::inMemory();
};

class StoreFileTest : public ::testing::Test {
protected:
    void SetUp() override { std::filesystem::remove(file); }
    void TearDown() override { std::filesystem::remove(file); }

    const std::string file = ::testing::TempDir() + "StoreFileTest."
                           + ::testing::UnitTest::GetInstance()->current_test_info()->name() + ".db";
};

TEST_F(StoreTest, KeepsUsers) {
    User user = named("Ann M\xC3\xBCller");
    user.zoneName = "Europe/Berlin";
    user.zone = ZoneRule("CET-1CEST,M3.5.0,M10.5.0/3");
    user.hours = {8 * 60, 12 * 60 + 30, {true, false, false, false, false, false, true}};
    store.addUser(user, "the hash");

    const auto found = store.findUser("Ann M\xC3\xBCller");
    ASSERT_TRUE(found);
    EXPECT_EQ(found->name, "Ann M\xC3\xBCller");
    EXPECT_EQ(found->zoneName, "Europe/Berlin");
    EXPECT_EQ(found->zone.text(), "CET-1CEST,M3.5.0,M10.5.0/3");
    EXPECT_EQ(found->hours.startMinute, 8 * 60);
    EXPECT_EQ(found->hours.endMinute, 12 * 60 + 30);
    EXPECT_EQ(found->hours.days, user.hours.days);
    EXPECT_EQ(store.passwordHash(found->id), "the hash");
}

TEST_F(StoreTest, FindsAUserWhateverTheCaseOfHisName) {
    add("Ann");
    EXPECT_TRUE(store.findUser("aNN"));
    EXPECT_FALSE(store.findUser("Anne"));
    EXPECT_FALSE(store.findUser(""));
    EXPECT_THROW(add("ANN"), TesseraError);
    EXPECT_EQ(store.users().size(), 1u);
}

TEST_F(StoreTest, RefusesImproperUsers) {
    EXPECT_THROW(add(""), TesseraError);
    EXPECT_THROW(add("a\nb"), TesseraError);
    EXPECT_THROW(add("\xFC"), TesseraError);
    EXPECT_THROW(add(std::string(256, 'a')), TesseraError);
    for (const auto& [start, end] : {std::pair{600, 600}, {-1, 600}, {600, 1441}, {700, 600}}) {
        User user = named("Ann");
        user.hours.startMinute = start;
        user.hours.endMinute = end;
        EXPECT_THROW(store.addUser(user, ""), TesseraError);
    }
    EXPECT_TRUE(store.users().empty());
}

TEST_F(StoreTest, ChangesUsers) {
    User ann = add("Ann");
    add("Bob");
    ann.name = "Anna";
    ann.hours.endMinute = 12 * 60;
    store.changeUser(ann);
    store.changePassword(ann.id, "another");
    EXPECT_EQ(store.findUser("Anna")->hours.endMinute, 12 * 60);
    EXPECT_EQ(store.passwordHash(ann.id), "another");
    ann.name = "bob";
    EXPECT_THROW(store.changeUser(ann), TesseraError);
    EXPECT_TRUE(store.findUser("Anna"));
}

TEST_F(StoreTest, HasADefaultUserWhenOneIsMarkedOrAlone) {
    EXPECT_FALSE(store.defaultUser());
    const User bob = add("Bob");
    EXPECT_EQ(store.defaultUser()->name, "Bob");
    const User ann = add("Ann");
    EXPECT_FALSE(store.defaultUser());
    store.setDefaultUser(bob.id);
    EXPECT_EQ(store.defaultUser()->name, "Bob");
    store.setDefaultUser(ann.id);
    EXPECT_EQ(store.defaultUser()->name, "Ann");
}

TEST_F(StoreTest, DeletesAUserWithAllThatIsHis) {
    const User ann = add("Ann");
    const UserDatabase mail = store.mailDatabase(ann.id);
    const Document document = store.addDocument(mail.id, "calendar", {{"a", {"b"}}});
    store.deleteUser(ann.id);
    EXPECT_FALSE(store.findUser("Ann"));
    EXPECT_FALSE(store.findDocument(mail.id, document.unid));
    EXPECT_THROW(store.mailDatabase(ann.id), TesseraError);
    EXPECT_THROW(store.passwordHash(ann.id), TesseraError);
}

TEST_F(StoreTest, GivesEachUserADatabaseOfEachKind) {
    const UserDatabase ann = store.mailDatabase(add("Ann").id);
    const UserDatabase bob = store.mailDatabase(add("Bob").id);
    EXPECT_EQ(ann.dbid.size(), 16u);
    EXPECT_EQ(ann.dbid.find_first_not_of("0123456789abcdef"), std::string::npos);
    EXPECT_NE(ann.dbid, bob.dbid);
    EXPECT_EQ(ann.title, "Mail of Ann");
    const UserDatabase journal = store.database(store.findUser("Ann")->id, "journal");
    EXPECT_EQ(journal.title, "Journal of Ann");
    EXPECT_NE(journal.dbid, ann.dbid);
    EXPECT_THROW(store.database(store.findUser("Ann")->id, "cellar"), TesseraError);
}

TEST_F(StoreTest, NumbersTheVersionsOfADocument) {
    const UserDatabase mail = store.mailDatabase(add("Ann").id);
    const Document made = store.addDocument(mail.id, "calendar", {{"name", {"one", "two"}}, {"other", {""}}});
    EXPECT_EQ(made.sequence, 1u);
    EXPECT_EQ(made.unid.size(), 32u);

    const Document changed = store.changeDocument(mail.id, made.unid, {{"name", {"three=3"}}});
    EXPECT_EQ(changed.sequence, 2u);
    EXPECT_EQ(changed.unid, made.unid);
    EXPECT_EQ(changed.kind, "calendar");
    const auto found = store.findDocument(mail.id, made.unid);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->sequence, 2u);
    EXPECT_EQ(found->properties, (Properties{{"name", {"three=3"}}}));
}

TEST_F(StoreTest, KeepsValuesInTheirOrder) {
    const UserDatabase mail = store.mailDatabase(add("Ann").id);
    const Properties properties{{"B", {"z", "", "a"}}, {"a", {"1"}}, {"#", {"x"}}};
    const Document document = store.addDocument(mail.id, "memo", properties);
    EXPECT_EQ(store.findDocument(mail.id, document.unid)->properties, properties);
}

TEST_F(StoreTest, ListsDocumentsOfOneKind) {
    const UserDatabase mail = store.mailDatabase(add("Ann").id);
    const Document first = store.addDocument(mail.id, "calendar", {});
    store.addDocument(mail.id, "mail", {});
    const Document second = store.addDocument(mail.id, "calendar", {});
    const auto documents = store.documents(mail.id, "calendar");
    ASSERT_EQ(documents.size(), 2u);
    EXPECT_EQ(documents[0].unid, first.unid);
    EXPECT_EQ(documents[1].unid, second.unid);
}

TEST_F(StoreTest, ListsVersionsOfOneKind) {
    const UserDatabase mail = store.mailDatabase(add("Ann").id);
    const Document first = store.addDocument(mail.id, "calendar", {{"a", {"b"}}});
    store.addDocument(mail.id, "mail", {});
    const Document second = store.addDocument(mail.id, "calendar", {});
    store.changeDocument(mail.id, first.unid, {});
    const auto versions = store.versions(mail.id, "calendar");
    ASSERT_EQ(versions.size(), 2u);
    EXPECT_EQ(versions[0].unid, first.unid);
    EXPECT_EQ(versions[0].sequence, 2u);
    EXPECT_EQ(versions[1].unid, second.unid);
}

TEST_F(StoreTest, KnowsUnconfirmedDocumentsByWhatWasSent) {
    const UserDatabase mail = store.mailDatabase(add("Ann").id);
    const Properties properties{{"a", {"b", "c"}}};
    const std::string first = store.addUnconfirmed(mail.id, "calendar", properties).unid;
    const std::string second = store.addUnconfirmed(mail.id, "calendar", {{"a", {"b"}}, {"c", {""}}}).unid;
    store.addDocument(mail.id, "calendar", properties);
    store.changeDocument(mail.id, first, {});
    EXPECT_EQ(store.unconfirmed(mail.id, "calendar", properties), std::vector{first});
    EXPECT_TRUE(store.unconfirmed(mail.id, "mail", properties).empty());
    EXPECT_TRUE(store.unconfirmed(mail.id, "calendar", {{"a", {"c", "b"}}}).empty());
    EXPECT_TRUE(store.unconfirmed(mail.id, "calendar", {}).empty());
    EXPECT_EQ(store.unconfirmed(mail.id, "calendar").size(), 2u);
    store.confirm(mail.id, first);
    EXPECT_EQ(store.unconfirmed(mail.id, "calendar"), std::vector{second});
    store.deleteDocument(mail.id, second);
    EXPECT_TRUE(store.unconfirmed(mail.id, "calendar").empty());
}

TEST_F(StoreTest, RecordsDeletionsAndUsesNoIdentityAgain) {
    const UserDatabase mail = store.mailDatabase(add("Ann").id);
    const Document first = store.addDocument(mail.id, "calendar", {{"a", {"b"}}});
    store.deleteDocument(mail.id, first.unid);
    EXPECT_FALSE(store.findDocument(mail.id, first.unid));
    EXPECT_EQ(store.deletedUnids(mail.id), std::vector{first.unid});
    EXPECT_NE(store.addDocument(mail.id, "calendar", {}).unid, first.unid);
}

TEST_F(StoreTest, RefusesWhatIsNotThere) {
    const UserDatabase mail = store.mailDatabase(add("Ann").id);
    const std::string unid(32, '0');
    EXPECT_FALSE(store.findDocument(mail.id, unid));
    EXPECT_THROW(store.changeDocument(mail.id, unid, {}), TesseraError);
    EXPECT_THROW(store.deleteDocument(mail.id, unid), TesseraError);
    EXPECT_TRUE(store.deletedUnids(mail.id).empty());
    EXPECT_THROW(store.addDocument(4711, "calendar", {}), TesseraError);
}

TEST_F(StoreTest, RefusesPropertiesThatCouldNotBeSent) {
    const UserDatabase mail = store.mailDatabase(add("Ann").id);
    const Document document = store.addDocument(mail.id, "calendar", {{"a", {"b"}}});
    for (const Properties& properties :
         {Properties{{"", {"x"}}}, Properties{{"a=b", {"x"}}}, Properties{{"a", {std::string(1, '\0')}}},
          Properties{{"a", {"\xFC"}}}}) {
        EXPECT_THROW(store.addDocument(mail.id, "calendar", properties), TesseraError);
        EXPECT_THROW(store.changeDocument(mail.id, document.unid, properties), TesseraError);
    }
    EXPECT_EQ(store.findDocument(mail.id, document.unid)->sequence, 1u);
    EXPECT_EQ(store.documents(mail.id, "calendar").size(), 1u);
}

TEST(StoreInMemory, DrawsTheSameIdentitiesEachTime) {
    std::string dbids[2];
    for (std::string& dbid : dbids) {
        Store store = Store::inMemory();
        store.addUser(named("Ann"), "");
        dbid = store.mailDatabase(store.findUser("Ann")->id).dbid;
    }
    EXPECT_EQ(dbids[0], dbids[1]);
}

TEST_F(StoreFileTest, OutlivesTheProgram) {
    Store(file).addUser(named("Ann"), "hash");
    Store store(file);
    ASSERT_TRUE(store.findUser("Ann"));
    const Store other(file); // a second program at the same file
    EXPECT_EQ(store.passwordHash(store.findUser("Ann")->id), "hash");
}

TEST_F(StoreFileTest, SkipsTheNumbersThatHandheldsTakeForNone) {
    Store store(file);
    store.addUser(named("Ann"), "");
    const UserDatabase mail = store.mailDatabase(store.findUser("Ann")->id);
    const std::string unid = store.addDocument(mail.id, "calendar", {}).unid;
    const std::pair<std::uint32_t, std::uint32_t> rows[] = {
        {65534, 65535}, {65535, 65537}, {65537, 65538}, {131071, 131073}};
    for (const auto& [before, after] : rows) {
        SqliteDatabase(file).execute("UPDATE document SET sequence = " + std::to_string(before));
        EXPECT_EQ(store.changeDocument(mail.id, unid, {}).sequence, after);
    }
}

TEST_F(StoreFileTest, IsForItsOwnerAlone) {
    Store store(file);
    store.addUser(named("Ann"), "hash");
    using std::filesystem::perms;
    for (const std::string& name : {file, file + "-wal", file + "-shm"}) {
        EXPECT_EQ(std::filesystem::status(name).permissions(), perms::owner_read | perms::owner_write)
            << name;
    }
}

TEST_F(StoreFileTest, RefusesAFileThatIsNoDatabase) {
    std::ofstream(file)
        << "This is a text, and longer than the header that a database would have here.............."
        << std::string(4096, '.');
    EXPECT_THROW(Store{file}, TesseraError);
}

TEST_F(StoreFileTest, RefusesTheDatabaseOfAnotherProgram) {
    SqliteDatabase(file).execute("CREATE TABLE recipe (name TEXT)");
    EXPECT_THROW(Store{file}, TesseraError);
    SqliteDatabase(file).execute("PRAGMA user_version = 3");
    EXPECT_THROW(Store{file}, TesseraError);
}

TEST(StoreFile, NeedsAPlace) { EXPECT_THROW(Store{"/nowhere/at/all.db"}, TesseraError); }

TEST_F(StoreTest, GivesDocumentsWithTheNamedPropertiesAlone) {
    const UserDatabase mail = store.mailDatabase(add("Ann").id);
    const Document first = store.addDocument(mail.id, "x", {{"A", {"1", "2"}}, {"B", {"3"}}, {"C", {"4"}}});
    store.addDocument(mail.id, "y", {{"A", {"5"}}});
    const Document second = store.addDocument(mail.id, "x", {{"D", {"6"}}});
    const std::vector<Document> documents = store.documents(mail.id, "x", {"A", "C", "E"});
    ASSERT_EQ(documents.size(), 2u);
    EXPECT_EQ(documents[0].unid, first.unid);
    EXPECT_EQ(documents[0].sequence, 1u);
    EXPECT_EQ(documents[0].properties, (Properties{{"A", {"1", "2"}}, {"C", {"4"}}}));
    EXPECT_EQ(documents[1].unid, second.unid);
    EXPECT_TRUE(documents[1].properties.empty());
    EXPECT_EQ(store.documents(mail.id, "x", {}).size(), 2u);
}

TEST_F(StoreTest, AnAnnotationLeavesTheSequenceNumber) {
    const UserDatabase mail = store.mailDatabase(add("Ann").id);
    const std::string unid = store.addDocument(mail.id, "x", {{"A", {"1", "2"}}, {"B", {"3"}}}).unid;
    store.annotateDocument(mail.id, unid, "A", "4");
    store.annotateDocument(mail.id, unid, "B", "");
    store.annotateDocument(mail.id, unid, "C", "5");
    const Document document = *store.findDocument(mail.id, unid);
    EXPECT_EQ(document.properties, (Properties{{"A", {"4"}}, {"C", {"5"}}}));
    EXPECT_EQ(document.sequence, 1u);
    EXPECT_THROW(store.annotateDocument(mail.id, std::string(32, '0'), "A", "4"), TesseraError);
    EXPECT_THROW(store.annotateDocument(mail.id, unid, "A=", "4"), TesseraError);
}

} // namespace
} // namespace tsr
