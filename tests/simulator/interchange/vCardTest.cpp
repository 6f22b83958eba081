#include "interchange/vCard.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "interchange/InterchangeError.h"

namespace tsr {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

Contact readOne(const std::string& lines) {
    const auto contacts = readVCards("BEGIN:VCARD\nVERSION:4.0\n" + lines + "END:VCARD\n");
    EXPECT_THAT(contacts, SizeIs(1));
    return contacts.at(0);
}

Contact everything() {
    Contact contact;
    contact.lastName = "M\xC3\xBCller; Lee";
    contact.firstName = "Max";
    contact.company = "Tools, Inc.";
    contact.title = "Engineer\nPilot";
    contact.address = "1 Main St\nFloor 2";
    contact.city = "Springfield";
    contact.state = "XX";
    contact.zip = "12345";
    contact.country = "Nowhere";
    contact.customs = {"one", "", "three", "4"};
    contact.note = "a\\b\n\nc";
    for (std::size_t kind = 0; kind < phoneKinds; ++kind)
        contact.phones[kind] = {"555-010" + std::to_string(kind), "2nd"};
    contact.displayed = PhoneKind::Other;
    contact.categories = {"Friends, old", "Work"};
    return contact;
}

TEST(VCard, IsReadByItsParts) {
    const Contact contact = readOne("N:Lee;Pat;Q.;;\nFN:Pat Lee\nORG:Tools;Sales\nTITLE:Engineer\n"
                                    "ADR;TYPE=work:Box 7;;1 Main St;Springfield;XX;12345;Nowhere\n"
                                    "NOTE:one\\ntwo\nCATEGORIES:Friends,Golf\nX-CUSTOM3:three\n"
                                    "PHOTO:data:image/gif;base64,AAAA\n");
    EXPECT_EQ(contact.lastName, "Lee");
    EXPECT_EQ(contact.firstName, "Pat");
    EXPECT_EQ(contact.company, "Tools, Sales");
    EXPECT_EQ(contact.title, "Engineer");
    EXPECT_EQ(contact.address, "Box 7\n1 Main St");
    EXPECT_EQ(contact.city, "Springfield");
    EXPECT_EQ(contact.state, "XX");
    EXPECT_EQ(contact.zip, "12345");
    EXPECT_EQ(contact.country, "Nowhere");
    EXPECT_EQ(contact.note, "one\ntwo");
    EXPECT_EQ(contact.customs[2], "three");
    EXPECT_THAT(contact.categories, ElementsAre("Friends", "Golf"));
    EXPECT_EQ(contact.displayed, std::nullopt);
}

TEST(VCard, TellsPhonesByTheirTypes) {
    const struct {
        const char* line;
        PhoneKind kind;
    } rows[] = {
        {"TEL;TYPE=WORK:1", PhoneKind::Work},
        {"TEL;TYPE=home,voice:1", PhoneKind::Home},
        {"TEL;TYPE=home;TYPE=fax:1", PhoneKind::Fax}, // a fax at home is a fax
        {"TEL;TYPE=\"work,cell\":1", PhoneKind::Mobile},
        {"TEL;PAGER:1", PhoneKind::Pager},
        {"TEL;VALUE=uri;TYPE=main-number:tel:1", PhoneKind::Main},
        {"TEL:1", PhoneKind::Other},
        {"TEL;TYPE=video:1", PhoneKind::Other},
        {"EMAIL;TYPE=work:1", PhoneKind::Email},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.line);
        EXPECT_THAT(readOne(std::string(row.line) + "\n").phonesOf(row.kind), ElementsAre("1"));
    }
}

TEST(VCard, DisplaysThePreferredPhone) {
    EXPECT_EQ(readOne("TEL;TYPE=work:1\nTEL;TYPE=home,pref:2\nTEL;PREF=1:3\n").displayed, PhoneKind::Home);
    EXPECT_EQ(readOne("TEL;TYPE=cell;PREF=1:1\n").displayed, PhoneKind::Mobile);
    EXPECT_EQ(readOne("EMAIL;PREF=1:\n").displayed, std::nullopt); // there is none
}

TEST(VCard, WithoutANameIsCalledByItsFullOne) {
    EXPECT_EQ(readOne("FN:Pat Lee\n").lastName, "Pat Lee");
    EXPECT_EQ(readOne("FN:Tools\nORG:Tools\n").lastName, "");
}

TEST(VCard, IsWritten) {
    Contact contact;
    contact.lastName = "Lee";
    contact.firstName = "Pat";
    contact.phonesOf(PhoneKind::Mobile) = {"555"};
    contact.displayed = PhoneKind::Mobile;
    contact.city = "Springfield";
    EXPECT_EQ(vCardText({contact}, VCardVersion::V4),
              "BEGIN:VCARD\r\nVERSION:4.0\r\nFN:Pat Lee\r\nN:Lee;Pat;;;\r\nTEL;TYPE=cell;PREF=1:555\r\n"
              "ADR:;;;Springfield;;;\r\nEND:VCARD\r\n");
    EXPECT_EQ(vCardText({contact}, VCardVersion::V3),
              "BEGIN:VCARD\r\nVERSION:3.0\r\nFN:Pat Lee\r\nN:Lee;Pat;;;\r\nTEL;TYPE=cell,pref:555\r\n"
              "ADR:;;;Springfield;;;\r\nEND:VCARD\r\n");
}

TEST(VCard, GoesBothWays) {
    Contact empty;
    Contact company;
    company.company = "Tools";
    const std::vector<Contact> contacts{everything(), company, empty};
    for (const auto version : {VCardVersion::V3, VCardVersion::V4})
        EXPECT_EQ(readVCards(vCardText(contacts, version)), contacts);
}

TEST(VCard, IsRefusedWhenItIsNone) {
    const struct {
        const char* text;
        const char* message;
    } rows[] = {
        {"FN:x\n", "line 1: a card begins with BEGIN:VCARD"},
        {"BEGIN:VCALENDAR\n", "line 1: a card begins with BEGIN:VCARD"},
        {"BEGIN:VCARD\nFN:x\n", "line 1: the card has no end"},
        {"BEGIN:VCARD\nBEGIN:VCARD\n", "line 2: a card begins within another"},
        {"BEGIN:VCARD\nVERSION:2.1\nEND:VCARD\n",
         "line 2: vCards of version 2.1 are not known, only 3.0 and 4.0"},
        {"BEGIN:VCARD\nnonsense\n", "line 2 has no value"},
    };
    for (const auto& row : rows) {
        try {
            readVCards(row.text);
            ADD_FAILURE() << row.text;
        } catch (const InterchangeError& error) {
            EXPECT_STREQ(error.what(), row.message);
        }
    }
    EXPECT_THAT(readVCards(""), IsEmpty());
}

} // namespace
} // namespace tsr
