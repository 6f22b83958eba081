#include "tessera/mailDocument.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tessera/TesseraError.h"

namespace tsr {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::int64_t noon = 1012998896; // 2002-02-06 12:34:56 UTC, 287152496 seconds after 1993 began

Mail lunch() {
    Mail mail;
    mail.folder = inboxFolder;
    mail.from = "Ann";
    mail.to = {"Max", "Pat Lee"};
    mail.subject = "Lunch";
    mail.body = "At noon?";
    mail.date = noon;
    return mail;
}

class MailDocument : public ::testing::Test {
protected:
    MailDocument() {
        User user;
        user.name = "Max";
        store.addUser(user, "");
        max = store.findUser("Max")->id;
    }

    Document find(const std::string& unid) { return *store.findDocument(store.mailDatabase(max).id, unid); }

    Store store = Store::inMemory();
    std::int64_t max = 0;
};

TEST_F(MailDocument, HoldsWhatIsNotEmpty) {
    Properties properties;
    setMail(properties, lunch());
    EXPECT_EQ(properties, (Properties{{"Body", {"At noon?"}},
                                      {"Date", {"287152496"}},
                                      {"Folder", {"Inbox"}},
                                      {"From", {"Ann"}},
                                      {"Importance", {"2"}},
                                      {"Subject", {"Lunch"}},
                                      {"To", {"Max", "Pat Lee"}}}));
}

TEST_F(MailDocument, HoldsAllOfAMail) {
    Mail mail = lunch();
    mail.unread = true;
    mail.replyTo = "Kim";
    mail.cc = {"Kim"};
    mail.bcc = {"Jo"};
    mail.importance = Mail::High;
    mail.returnReceipt = true;
    mail.deliveryReport = true;
    mail.answers = "0123";
    mail.notice = MeetingNotice{"You are invited", {"Accept", "Decline", "Reply"}, "Room 1", 90};
    Properties properties{{"Other", {"stays"}}};
    setMail(properties, mail);
    EXPECT_EQ(properties, (Properties{{"ActionList", {"Accept", "Decline", "Reply"}},
                                      {"Answers", {"0123"}},
                                      {"Bcc", {"Jo"}},
                                      {"Body", {"At noon?"}},
                                      {"Cc", {"Kim"}},
                                      {"Date", {"287152496"}},
                                      {"DeliveryReport", {"1"}},
                                      {"Duration", {"90"}},
                                      {"Folder", {"Inbox"}},
                                      {"From", {"Ann"}},
                                      {"Importance", {"1"}},
                                      {"NoticeBody", {"You are invited"}},
                                      {"Other", {"stays"}},
                                      {"ReplyTo", {"Kim"}},
                                      {"ReturnReceipt", {"1"}},
                                      {"Room", {"Room 1"}},
                                      {"Subject", {"Lunch"}},
                                      {"To", {"Max", "Pat Lee"}},
                                      {"Unread", {"1"}}}));
    const Mail read = toMail(properties);
    EXPECT_TRUE(read.unread && read.returnReceipt && read.deliveryReport);
    EXPECT_THAT(read.cc, ElementsAre("Kim"));
    EXPECT_THAT(read.bcc, ElementsAre("Jo"));
    EXPECT_EQ(read.importance, Mail::High);
    EXPECT_EQ(read.answers, "0123");
    EXPECT_EQ(read.date, noon);
    ASSERT_TRUE(read.notice.has_value());
    EXPECT_EQ(read.notice->minutes, 90u);
    EXPECT_EQ(read.notice->room, "Room 1");
    EXPECT_THAT(read.notice->actions, ElementsAre("Accept", "Decline", "Reply"));
    // And back to one that says less.
    setMail(properties, lunch());
    EXPECT_EQ(properties.size(), 8u);
}

TEST_F(MailDocument, RefusesWhatItCannotSay) {
    Mail mail = lunch();
    Properties properties;
    mail.folder = "Attic";
    EXPECT_THROW(setMail(properties, mail), TesseraError);
    for (const int importance : {0, 4}) {
        mail = lunch();
        mail.importance = importance;
        EXPECT_THROW(setMail(properties, mail), TesseraError) << importance;
    }
    for (const std::int64_t date : {std::int64_t{725846399}, std::int64_t{725846400} + 0x100000000}) {
        mail = lunch();
        mail.date = date; // 1992-12-31 23:59:59, and 33 bits of seconds since 1993
        EXPECT_THROW(setMail(properties, mail), TesseraError) << date;
    }
    EXPECT_THAT(properties, IsEmpty());
}

TEST_F(MailDocument, ArrivesUnreadInTheInbox) {
    Mail mail = lunch();
    mail.folder = sentFolder;
    const Document document = deliver(store, max, mail);
    EXPECT_EQ(document.sequence, 1u);
    EXPECT_EQ(toMail(find(document.unid).properties).folder, "Inbox");
    EXPECT_TRUE(toMail(document.properties).unread);
    const Document draft = saveDraft(store, max, mail);
    EXPECT_EQ(toMail(draft.properties).folder, "Drafts");
    EXPECT_FALSE(toMail(draft.properties).unread);
    ASSERT_EQ(mailIn(store, max, inboxFolder).size(), 1u);
    EXPECT_EQ(mailIn(store, max, inboxFolder)[0].unid, document.unid);
    EXPECT_EQ(mailIn(store, max, draftsFolder)[0].unid, draft.unid);
    EXPECT_THAT(mailIn(store, max, sentFolder), IsEmpty());
}

TEST_F(MailDocument, AReadMarkIsNoVersionOfItsOwn) {
    const std::string unid = deliver(store, max, lunch()).unid;
    markUnread(store, max, unid, false);
    EXPECT_FALSE(toMail(find(unid).properties).unread);
    EXPECT_EQ(find(unid).sequence, 1u);
    markUnread(store, max, unid, true);
    markUnread(store, max, unid, true);
    EXPECT_TRUE(toMail(find(unid).properties).unread);
    EXPECT_EQ(find(unid).sequence, 1u);
    EXPECT_EQ(find(unid).properties.at("Subject").front(), "Lunch");
    EXPECT_THROW(markUnread(store, max, std::string(32, '0'), true), TesseraError);
}

} // namespace
} // namespace tsr
