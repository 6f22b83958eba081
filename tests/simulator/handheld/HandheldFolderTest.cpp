#include "handheld/HandheldFolder.h"

#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TemporaryFolder.h"
#include "handheld/HandheldError.h"
#include "handheld/pdbFile.h"

namespace tsr {
namespace {

namespace fs = std::filesystem;

class HandheldFolderTest : public testing::Test {
protected:
    fs::path path() const { return temporary_.path() / "palm"; }

    static Handheld sample() {
        Handheld handheld;
        handheld.userName = "Pat Lee";
        handheld.clock = 1012998896;
        handheld.create("MemoDB", fourCharacterCode("DATA"), fourCharacterCode("memo"))
            .addRecord({'a', 0}, 2);
        handheld.preferences[{fourCharacterCode("mail"), 1, true}] = {1, {0, 1, 2}};
        return handheld;
    }

    TemporaryFolder temporary_;
};

using Bytes = std::vector<std::uint8_t>;

Bytes contentOf(const fs::path& file) { return readFile(file); }

TEST_F(HandheldFolderTest, ComesBackAsItWas) {
    HandheldFolder::create(path(), sample());
    EXPECT_EQ(HandheldFolder::open(path()).handheld(), sample());
    EXPECT_TRUE(fs::exists(path() / "MemoDB.pdb"));
    EXPECT_TRUE(fs::exists(path() / "preferences" / "mail-1-saved"));
}

TEST_F(HandheldFolderTest, RefusesToReplaceAHandheld) {
    HandheldFolder::create(path(), sample());
    EXPECT_THROW(HandheldFolder::create(path(), Handheld()), HandheldError);
}

TEST_F(HandheldFolderTest, RefusesAFolderThatIsNone) {
    EXPECT_THROW(HandheldFolder::open(path()), HandheldError);
}

TEST_F(HandheldFolderTest, ABackupBecomesAHandheld) {
    Handheld before = sample();
    fs::create_directories(path());
    const Bytes file = toPdb(before.databases.at("MemoDB"));
    replaceFile(path() / "Backup of memos.pdb", file);
    replaceFile(path() / "Program.prc", {1});
    HandheldFolder folder = HandheldFolder::create(path(), Handheld());
    EXPECT_EQ(*folder.handheld().find("MemoDB"), before.databases.at("MemoDB"));
    folder.handheld().find("MemoDB")->addRecord({});
    folder.save();
    EXPECT_NE(contentOf(path() / "Backup of memos.pdb"), file); // in its own file
    EXPECT_FALSE(fs::exists(path() / "MemoDB.pdb"));
    EXPECT_EQ(contentOf(path() / "Program.prc"), Bytes{1});
}

TEST_F(HandheldFolderTest, WritesOnlyWhatChanged) {
    HandheldFolder folder = HandheldFolder::create(path(), sample());
    folder.handheld().create("ToDoDB", 0, 0);
    fs::remove(path() / "MemoDB.pdb");
    fs::remove(path() / "handheld.json");
    folder.save();
    EXPECT_TRUE(fs::exists(path() / "ToDoDB.pdb"));
    EXPECT_FALSE(fs::exists(path() / "MemoDB.pdb"));
    EXPECT_FALSE(fs::exists(path() / "handheld.json"));
}

TEST_F(HandheldFolderTest, RemovesTheFilesOfWhatIsGone) {
    HandheldFolder folder = HandheldFolder::create(path(), sample());
    folder.handheld().databases.clear();
    folder.handheld().preferences.clear();
    folder.save();
    EXPECT_FALSE(fs::exists(path() / "MemoDB.pdb"));
    EXPECT_TRUE(fs::is_empty(path() / "preferences"));
    EXPECT_TRUE(HandheldFolder::open(path()).handheld().databases.empty());
}

TEST_F(HandheldFolderTest, ADatabaseMadeAnewTakesTheFileOfTheOldOne) {
    HandheldFolder folder = HandheldFolder::create(path(), sample());
    folder.handheld().databases.erase("MemoDB");
    folder.handheld().create("MemoDB", 1, 2);
    folder.save();
    EXPECT_EQ(HandheldFolder::open(path()).handheld().find("MemoDB")->records().size(), 0U);
}

TEST_F(HandheldFolderTest, LeavesNoUnfinishedFile) {
    HandheldFolder::create(path(), sample());
    for (const auto& entry : fs::recursive_directory_iterator(path()))
        EXPECT_NE(entry.path().extension(), ".new");
}

TEST_F(HandheldFolderTest, NamesTheDamagedFile) {
    HandheldFolder::create(path(), sample());
    replaceFile(path() / "Bad.pdb", {1, 2, 3});
    try {
        HandheldFolder::open(path());
        FAIL() << "opened";
    } catch (const HandheldError& error) {
        EXPECT_THAT(error.what(), testing::HasSubstr("Bad.pdb: the file is shorter than its header"));
    }
}

TEST_F(HandheldFolderTest, RefusesOneDatabaseInTwoFiles) {
    HandheldFolder::create(path(), sample());
    fs::copy_file(path() / "MemoDB.pdb", path() / "Other.pdb");
    EXPECT_THROW(HandheldFolder::open(path()), HandheldError);
}

TEST_F(HandheldFolderTest, LeavesFilesOfResourcesAlone) {
    Handheld handheld = sample();
    HandheldDatabase& resources = handheld.create("Program", 0, 0, DatabaseHeader::resource);
    const Bytes file = toPdb(resources);
    handheld.databases.erase("Program");
    HandheldFolder::create(path(), handheld);
    replaceFile(path() / "Program.pdb", file);
    HandheldFolder folder = HandheldFolder::open(path());
    EXPECT_EQ(folder.handheld().find("Program"), nullptr);
    folder.handheld().create("Program", 0, 0);
    folder.save();
    EXPECT_EQ(contentOf(path() / "Program.pdb"), file);
    EXPECT_TRUE(fs::exists(path() / "Program-2.pdb"));
}

TEST_F(HandheldFolderTest, AFailedWriteLeavesTheOldFile) {
    HandheldFolder folder = HandheldFolder::create(path(), sample());
    const Bytes before = contentOf(path() / "MemoDB.pdb");
    fs::create_directory(path() / "MemoDB.pdb.new"); // in the way
    folder.handheld().find("MemoDB")->addRecord({});
    EXPECT_THROW(folder.save(), HandheldError);
    EXPECT_EQ(contentOf(path() / "MemoDB.pdb"), before);
    fs::remove(path() / "MemoDB.pdb.new");
    folder.save(); // what was not saved is saved now
    EXPECT_NE(contentOf(path() / "MemoDB.pdb"), before);
}

} // namespace
} // namespace tsr
