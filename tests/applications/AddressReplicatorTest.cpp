#include "applications/AddressReplicator.h"

#include "applications/ItemReplicatorTest.h"
#include "foundation/signals.h"
#include "records/NotesAddressRecord.h"
#include "records/PalmAddressRecord.h"
#include "records/PalmDummyRecord.h"
#include "support/errors.h"

namespace tsr {
namespace {

using test::bytes;
using test::dbidText;
using test::noDbid;
using test::noUnid;
using test::Strings;
using test::textRaisedBy;
using test::unidA;
using test::unidB;
using test::unidC;
using test::WireAnswer;
using test::WireRequest;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(AddressApplicationTraits, TellsAddressFromTheOthers) {
    const AddressApplicationTraits traits;
    EXPECT_EQ(traits.displayName, "Address");
    EXPECT_EQ(traits.appDbName, "AddressDB");
    EXPECT_EQ(traits.appDbCreator, 0x61646472u); // addr
    EXPECT_EQ(traits.appDbType, 0x44415441u);    // DATA
    EXPECT_EQ(traits.syncDbName, "AddressSync");
    EXPECT_EQ(traits.syncDbCreator, 0x54535241u); // TSRA
    EXPECT_EQ(traits.syncDbType, 0x41444452u);    // ADDR
    EXPECT_EQ(traits.configCategory(), 2);
}

// With what the pipeline alone can reach.
class OpenReplicator : public AddressReplicator {
public:
    using AddressReplicator::AddressReplicator;
    using AddressReplicator::appInfoToWrite;
    using AddressReplicator::categoryOfClass;
    using AddressReplicator::classNames;
    using AddressReplicator::convertToNotes;
    using AddressReplicator::convertToPalm;
    using AddressReplicator::isConfigured;
    using AddressReplicator::makeNotesRecord;
    using AddressReplicator::makePalmRecord;
    using AddressReplicator::sendsWantedInFull;
};

// Contacts with a last name and Work "1". Free slots are labelled Home, Fax, Email and Mobile.
const std::string lee = "00 07 42 10 00 00 00 09 00 4C 65 65 00 31 00";
const std::string kim = "00 07 42 10 00 00 00 09 00 4B 69 6D 00 31 00";

class AddressReplicatorTest : public test::ItemReplicatorTest<AddressReplicator, AddressApplicationTraits> {
protected:
    // A server that has and wants nothing.
    static test::Answers quietServer() {
        return {{34, {"token"}}, {186, {"0"}}, {187, {"0"}}, {183, {"0"}},
                {184, {"0"}},    {185, {"0"}}, {181, {"0"}}, {182, {"0"}}};
    }

    static Strings contact(const std::string& unid, const Strings& more) {
        Strings strings = {"UNID=" + unid, "DBID=" + dbidText, "SeqNum=4"};
        strings.insert(strings.end(), more.begin(), more.end());
        return strings;
    }

    // What is sent of such a contact, behind its identity.
    static Strings sentContact(const Strings& before, const std::string& lastName) {
        Strings strings = before;
        for (const std::string& property :
             {std::string("Address="), std::string("Body="), std::string("Category="), std::string("City="),
              std::string("Company="), std::string("Country="), std::string("Custom1="),
              std::string("Custom2="), std::string("Custom3="), std::string("Custom4="),
              std::string("FirstName="), "LastName=" + lastName, std::string("PalmListed=W"),
              std::string("PalmPreferred=W"), std::string("State="), std::string("Work=1"),
              std::string("Zip=")})
            strings.push_back(property);
        return strings;
    }

    // Puts Lee, the record 1, on both sides.
    void haveLee() {
        auto answers = quietServer();
        answers[33] = {dbidText, unidA, "1"};
        answerWith(answers);
        database.addRecord(bytes(lee), 0);
        EXPECT_THAT(run(), IsEmpty());
    }

    OpenReplicator replicator{palm};
};

TEST_F(AddressReplicatorTest, HasOneClassWithoutACategory) {
    EXPECT_EQ(replicator.classNames(), Strings{"Address items"});
    std::uint8_t category = 9;
    EXPECT_FALSE(replicator.categoryOfClass("Address items", category));
    EXPECT_EQ(category, 9);
    EXPECT_TRUE(replicator.isConfigured());
    EXPECT_TRUE(replicator.sendsWantedInFull());
}

TEST_F(AddressReplicatorTest, MakesRecordsOfBothForms) {
    PalmRecordBuffer buffer;
    const auto data = bytes(lee);
    buffer.appendBytes(data.data(), data.size());
    buffer.setCategoryId(1);
    const auto palmRecord = replicator.makePalmRecord(buffer, true);
    EXPECT_EQ(dynamic_cast<const PalmAddressRecord&>(*palmRecord).lastName, "Lee");
    EXPECT_EQ(palmRecord->category(), 1);
    EXPECT_TRUE(palmRecord->archived());
    const auto notes = replicator.makeNotesRecord({{"LastName", {"Lee"}}, {"Title", {"Dr", "Prof"}}});
    const auto& typed = dynamic_cast<const NotesAddressRecord&>(*notes);
    EXPECT_EQ(typed.lastName, "Lee");
    EXPECT_EQ(typed.title, (Strings{"Dr", "Prof"}));
}

TEST_F(AddressReplicatorTest, ConvertsAContactToOneRecord) {
    NotesAddressRecord notes;
    notes.lastName = "Lee";
    notes.categories = {"Home", "Garden"};
    bool resendWanted = true;
    const PalmRecordGroup group = replicator.convertToPalm(notes, resendWanted);
    EXPECT_FALSE(resendWanted);
    EXPECT_EQ(group.size(), 1u);
    const auto& palmRecord = dynamic_cast<const PalmAddressRecord&>(*group.get(0));
    EXPECT_EQ(palmRecord.lastName, "Lee");
    EXPECT_EQ(palmRecord.category(), 1);
    EXPECT_FALSE(replicator.appInfoToWrite());
}

TEST_F(AddressReplicatorTest, AnEmptyCategoryIsSkipped) {
    NotesAddressRecord notes;
    notes.categories = {"", "Home"};
    bool resendWanted = false;
    EXPECT_EQ(replicator.convertToPalm(notes, resendWanted).category(), 1);
    notes.categories = {"", ""};
    EXPECT_EQ(replicator.convertToPalm(notes, resendWanted).category(), 0);
}

TEST_F(AddressReplicatorTest, ConvertsARecordToAContact) {
    for (const auto& [category, name] : {std::pair(1u, "Home"), std::pair(0u, "")}) {
        SCOPED_TRACE(category);
        const auto palmRecord = makeCounted<PalmAddressRecord>();
        palmRecord->lastName = "Lee";
        palmRecord->setCategory(category);
        PalmRecordGroup group;
        group.set(0, palmRecord);
        const auto notes = replicator.convertToNotes(group, false, 0);
        const auto& typed = dynamic_cast<const NotesAddressRecord&>(*notes);
        EXPECT_EQ(typed.lastName, "Lee");
        EXPECT_EQ(typed.categories, Strings{name});
    }
}

TEST_F(AddressReplicatorTest, RefusesAGroupOfOtherThanOneRecord) {
    PalmRecordGroup group;
    EXPECT_EQ(textRaisedBy([&] { replicator.convertToNotes(group, false, 0); }),
              "Palm record groups for the application being synchronized should contain a single record, but "
              "0 were found.");
    group.set(0, makeCounted<PalmAddressRecord>());
    group.set(1, nullptr);
    EXPECT_EQ(textRaisedBy([&] { replicator.convertToNotes(group, false, 0); }),
              "Palm record groups for the application being synchronized should contain a single record, but "
              "2 were found.");
}

TEST_F(AddressReplicatorTest, RefusesARecordThatIsNoContact) {
    PalmRecordGroup group;
    group.set(0, makeCounted<PalmDummyRecord>());
    EXPECT_THROW(replicator.convertToNotes(group, false, 0), BadPalmRecord);
    group.set(0, nullptr);
    EXPECT_THROW(replicator.convertToNotes(group, false, 0), BadPalmRecord);
}

TEST_F(AddressReplicatorTest, SendsANewContact) {
    haveLee();
    EXPECT_EQ(server->requests(), (std::vector<WireRequest>{
                                      server->requests()[0], // the user
                                      {7, {}},
                                      {33, sentContact({"", noDbid, noUnid, "", "", "", ""}, "Lee")},
                                      {34, {"287152496", "C", "", "", dbidText, unidA, "1", "1"}},
                                      {186, {"token"}},
                                      {187, {"token", "0", "0"}},
                                      {183, {"token"}},
                                      {184, {"token", "0", "0"}},
                                      {185, {"token"}},
                                      {181, {"token"}},
                                      {182, {"token", "0", "0"}},
                                      {200, {}},
                                      {19, {}},
                                  }));
    EXPECT_EQ(handheldFunctionCallCount("SyncReadDBAppInfoBlock"), 0u); // no category is in use
}

TEST_F(AddressReplicatorTest, SendsWhatTheServerWantsAlsoUnmodified) {
    haveLee();
    auto answers = quietServer();
    answers[183] = {"1"};
    answers[184] = {"1", dbidText, unidA};
    answers[33] = {dbidText, unidA, "1"};
    answerWith(answers);
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_THAT(sent(34), ElementsAre(Strings{"287152496", "C", "", "", dbidText, unidA, "1", "1"}));
    EXPECT_THAT(sent(33), ElementsAre(sentContact({"token", dbidText, unidA, "", "", "", ""}, "Lee")));

    ASSERT_TRUE(database.editRecord(1, bytes(kim)));
    answers[33] = {dbidText, unidA, "2"};
    answerWith(answers);
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_THAT(sent(34), ElementsAre(Strings{"287152496", "C", "", "", dbidText, unidA, "1", "2"}));
    EXPECT_THAT(sent(33), ElementsAre(sentContact({"token", dbidText, unidA, "", "", "", ""}, "Kim")));
}

TEST_F(AddressReplicatorTest, AWantedContactThatIsGoneIsForgotten) {
    haveLee();
    database.eraseRecord(1); // without a trace
    auto answers = quietServer();
    answers[183] = {"1"};
    answers[184] = {"1", dbidText, unidA};
    answerWith(answers);
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_THAT(sent(33), IsEmpty());
    answerWith(quietServer());
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_THAT(sent(34), ElementsAre(Strings{"287152496", "C", "", ""}));
}

TEST_F(AddressReplicatorTest, TheAnswersToAnomaliesAndDeletionsHaveOneStringMore) {
    haveLee();
    ASSERT_TRUE(database.editRecord(1, bytes(kim)));
    auto answers = quietServer();
    answers[186] = {"1"};
    answers[187] = {"1", dbidText, unidA};
    answers[190] = {dbidText, unidA, unidB, "3"}; // the third is the new identity
    answerWith(answers);
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_THAT(sent(190), ElementsAre(sentContact({"token", dbidText, unidA, "0"}, "Kim")));

    ASSERT_TRUE(database.deleteRecord(1));
    answers = quietServer();
    answers[191] = {"1", dbidText, unidB}; // the first is a count
    answerWith(answers);
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_THAT(sent(191), ElementsAre(Strings{dbidText, unidB}));
    EXPECT_THAT(sent(34), ElementsAre(Strings{"287152496", "C", "", ""}));
}

TEST_F(AddressReplicatorTest, TakesWhatTheServerHas) {
    answerBy([answers = quietServer()](const WireRequest& request) {
        if (request.code == 185) return WireAnswer{.strings = {"2"}};
        if (request.code == 188 && request.strings[1] == "0") {
            return WireAnswer{.strings =
                                  contact(unidA, {"LastName=Lee", "Work=1", "Mobile=2", "PalmListed=WM",
                                                  "PalmPreferred=M", "Category=Shops"})};
        }
        if (request.code == 188)
            return WireAnswer{.strings =
                                  contact(unidC, {"LastName=Kim", "Work=1", "Category=", "Category=Home"})};
        return answerOf(answers, request);
    });
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_THAT(sent(188), ElementsAre(Strings{"token", "0", "1"}, Strings{"token", "1", "1"}));
    const std::string kimOnDevice = "2/1: " + kim;
    EXPECT_EQ(contents(database),
              (Strings{"1/2: 00 14 21 70 00 00 00 19 00 4C 65 65 00 31 00 32 00", kimOnDevice}));
    EXPECT_EQ(categoryName(2), "Shops"); // unknown to the handheld until now

    auto answers = quietServer();
    answers[181] = {"1"};
    answers[182] = {"1", dbidText, unidA};
    answerWith(answers);
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_THAT(sent(34), ElementsAre(Strings{"287152496", "C", "", "", dbidText, unidA, "4", "4", dbidText,
                                              unidC, "4", "4"}));
    EXPECT_EQ(contents(database), Strings{kimOnDevice});
}

TEST_F(AddressReplicatorTest, AContactThatIsTooLongIsRefusedAlone) {
    answerBy([answers = quietServer()](const WireRequest& request) {
        if (request.code == 185) return WireAnswer{.strings = {"3"}};
        if (request.code == 188 && request.strings[1] == "0")
            return WireAnswer{.strings = contact(unidA, {"Body=" + std::string(65526, 'a')})};
        if (request.code == 188 && request.strings[1] == "1")
            return WireAnswer{.strings = {"UNID=" + unidB, "DBID=" + dbidText, "LastName=Lee"}};
        if (request.code == 188) return WireAnswer{.strings = contact(unidC, {"LastName=Kim", "Work=1"})};
        return answerOf(answers, request);
    });
    EXPECT_THAT(
        run(), ElementsAre("** Unable to write Palm record group for Notes record with DBID 0123456789abcdef "
                           "and UNID 0000000000000000000000000000000a.",
                           "**** Buffer length exceeded.",
                           "** An error occurred whilst receiving the item with item id '1' from Notes.",
                           "**** No sequence number was found on an item received from Notes."));
    EXPECT_EQ(contents(database), Strings{"1/0: " + kim});
}

TEST_F(AddressReplicatorTest, ARecordThatCannotBeReadIsLeftAlone) {
    auto answers = quietServer();
    answers[33] = {dbidText, unidA, "1"};
    answerWith(answers);
    put(database, 1, 0, "00 07 42 18 00 00 00 08 00 31 00", 0x40); // a text under the label 8
    put(database, 2, 0, lee, 0x40);
    EXPECT_THAT(run(), ElementsAre("** Unable to read record with uid=00000001 from the device.",
                                   "**** The phone label identifier (8) is invalid.",
                                   "** An error occurred sending an item to Notes, probably the result of a "
                                   "previous error."));
    EXPECT_EQ(sent(33).size(), 1u);
}

} // namespace
} // namespace tsr
