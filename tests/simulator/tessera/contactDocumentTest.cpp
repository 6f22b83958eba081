#include "tessera/contactDocument.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tsr {
namespace {

using ::testing::ElementsAre;

Contact pat() {
    Contact contact;
    contact.lastName = "Lee";
    contact.firstName = "Pat";
    contact.title = "Engineer\nPilot";
    contact.customs[3] = "four";
    contact.note = "one\ntwo";
    contact.phonesOf(PhoneKind::Work) = {"1", "2"};
    contact.phonesOf(PhoneKind::Main) = {"3"};
    contact.displayed = PhoneKind::Main;
    contact.categories = {"Friends"};
    return contact;
}

TEST(ContactDocument, GoesBothWays) {
    Properties properties;
    setContact(properties, pat());
    EXPECT_EQ(properties, (Properties{{"Address", {""}},
                                      {"Body", {"one\ntwo"}},
                                      {"Category", {"Friends"}},
                                      {"City", {""}},
                                      {"Company", {""}},
                                      {"Country", {""}},
                                      {"Custom1", {""}},
                                      {"Custom2", {""}},
                                      {"Custom3", {""}},
                                      {"Custom4", {"four"}},
                                      {"FirstName", {"Pat"}},
                                      {"LastName", {"Lee"}},
                                      {"Main", {"3"}},
                                      {"PalmPreferred", {"m"}},
                                      {"State", {""}},
                                      {"Title", {"Engineer", "Pilot"}},
                                      {"Work", {"1", "2"}},
                                      {"Zip", {""}}}));
    EXPECT_EQ(toContact(properties), pat());
    EXPECT_EQ(toContact({}), Contact());
}

TEST(ContactDocument, LeavesWhatAContactDoesNotKnow) {
    Properties properties{{"Birthday", {"1970-01-01"}}, {"PalmListed", {"Hm"}}, {"Home", {"9"}}};
    setContact(properties, pat());
    EXPECT_EQ(properties.at("Birthday"), std::vector<std::string>{"1970-01-01"});
    EXPECT_FALSE(properties.contains("Home"));
}

// A handheld has room for five, and takes those first that it had.
TEST(ContactDocument, ListsTheNumbersThatTheHandheldIsToHave) {
    Properties properties{{"PalmListed", {"Hm"}}};
    setContact(properties, pat());
    EXPECT_EQ(properties.at("PalmListed"), std::vector<std::string>{"mW"});
    Contact contact = pat();
    for (std::vector<std::string>& numbers : contact.phones) numbers = {"1"};
    setContact(properties, contact);
    EXPECT_EQ(properties.at("PalmListed"), std::vector<std::string>{"mWEHF"});
}

// What the handheld sends of a contact with these numbers.
Properties sent(const Properties& phones, const std::string& listed) {
    Properties properties = phones;
    properties["LastName"] = {"Lee"};
    properties["PalmListed"] = {listed};
    properties["PalmPreferred"] = {"W"};
    properties["Category"] = {""};
    return properties;
}

TEST(ContactDocument, TakesOverWhatTheHandheldSends) {
    EXPECT_EQ(adoptContact({}, sent({{"Work", {"1"}}}, "W")), sent({{"Work", {"1"}}}, "W"));
    const Properties kept{{"Birthday", {"x"}}, {"LastName", {"Old"}}, {"Title", {"Pilot"}}, {"Work", {"0"}}};
    Properties expected = sent({{"Work", {"1"}}}, "W");
    expected["Birthday"] = {"x"}; // of which the handheld knows nothing
    EXPECT_EQ(adoptContact(kept, sent({{"Work", {"1"}}}, "W")), expected);
}

TEST(ContactDocument, KeepsTheNumbersThatTheHandheldHadNoRoomFor) {
    const Properties kept{{"Email", {"e"}}, {"Work", {"w"}},  {"Home", {"h"}},           {"Fax", {"f"}},
                          {"Main", {"m"}},  {"Other", {"o"}}, {"PalmListed", {"mmEWHF"}}};
    // It deletes Fax and changes Work.
    const Properties changed = adoptContact(
        kept, sent({{"Work", {"W"}}, {"Home", {"h"}}, {"Main", {"m"}}, {"Email", {"e"}}}, "WHmE"));
    EXPECT_FALSE(changed.contains("Fax"));
    EXPECT_EQ(changed.at("Other"), std::vector<std::string>{"o"});
    EXPECT_EQ(changed.at("Work"), std::vector<std::string>{"W"});
}

TEST(ContactDocument, KnowsWhatAHandheldHadRoomForThatNeverSentTheContact) {
    const Properties kept{{"Email", {"e"}}, {"Work", {"w"}},   {"Home", {"h"}}, {"Fax", {"f"}},
                          {"Main", {"m"}},  {"Mobile", {"M"}}, {"Other", {"o"}}};
    const Properties changed = adoptContact(kept, sent({{"Email", {"e"}}}, "E"));
    for (const char* const name : {"Work", "Home", "Fax", "Mobile"}) EXPECT_FALSE(changed.contains(name));
    for (const char* const name : {"Email", "Main", "Other"}) EXPECT_TRUE(changed.contains(name));
}

// A place that becomes free on the handheld stays so until it is given the contact anew.
TEST(ContactDocument, KeepsWhatTheHandheldHadNoRoomForOverSeveralVersions) {
    Properties document{{"Work", {"w"}}, {"Home", {"h"}},  {"Fax", {"f"}},           {"Other", {"o"}},
                        {"Main", {"m"}}, {"Pager", {"p"}}, {"PalmListed", {"WHFOm"}}};
    document = adoptContact(document, sent({{"Home", {"h"}}}, "H"));
    document = adoptContact(document, sent({{"Home", {"H"}}}, "H"));
    EXPECT_EQ(document.at("Pager"), std::vector<std::string>{"p"});
    document = adoptContact(document, sent({}, ""));
    document = adoptContact(document, sent({}, ""));
    EXPECT_EQ(document.at("Pager"), std::vector<std::string>{"p"});
    EXPECT_FALSE(document.contains("Home"));
}

TEST(ContactDocument, CountsOnlyNumbersThatThereAre) {
    const Properties kept{{"Work", {""}}, {"Fax", {}}, {"Main", {"m"}}, {"PalmListed", {"xWFHm"}}};
    EXPECT_FALSE(adoptContact(kept, sent({}, "")).contains("Main"));
}

TEST(ContactDocument, KeepsCategoriesBesideTheHandhelds) {
    const auto categoriesAfter = [](const std::vector<std::string>& kept, const std::string& category) {
        Properties version = sent({}, "");
        version["Category"] = {category};
        return adoptContact({{"Category", kept}}, version).at("Category");
    };
    EXPECT_THAT(categoriesAfter({"a", "b"}, "a"), ElementsAre("a", "b"));
    EXPECT_THAT(categoriesAfter({"a", "b"}, "b"), ElementsAre("b", "a")); // the first is the handheld's
    EXPECT_THAT(categoriesAfter({"a", "b"}, "c"), ElementsAre("c"));
    EXPECT_THAT(categoriesAfter({"a", "b"}, ""), ElementsAre(""));
}

} // namespace
} // namespace tsr
