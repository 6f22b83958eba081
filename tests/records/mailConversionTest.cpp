#include "records/mailConversion.h"

#include "support/errors.h"

#include "gtest/gtest.h"

namespace tsr {
namespace {

using test::textRaisedBy;
using Strings = std::vector<std::string>;

const std::string block =
    "\n\n\n\n\n\n----- Vellum Info -----\nUNID:0123abcd;\n----- End Vellum Info -----\n";

NotesMailRecord inboxMail() {
    NotesMailRecord notes;
    notes.className = "Inbox";
    return notes;
}

TEST(MailConversion, KnowsTheFoldersOfTheClasses) {
    EXPECT_EQ(mailFolder("Inbox"), 0);
    EXPECT_EQ(mailFolder("Drafts"), 4);
    for (const std::string name : {"", "inbox", "Outbox", "Sent"}) {
        EXPECT_EQ(textRaisedBy([&] { mailFolder(name); }), "Invalid class name '" + name + "'.");
        NotesMailRecord notes;
        notes.className = name;
        EXPECT_EQ(textRaisedBy([&] { toPalmMailRecord(notes); }), "Invalid class name '" + name + "'.");
    }
}

TEST(MailConversion, BringsAMessageToTheDevice) {
    NotesMailRecord notes = inboxMail();
    notes.bcc = "d,\n";
    notes.body = "Hi";
    notes.cc = "c";
    notes.from = "a";
    notes.replyTo = "e";
    notes.sentTo = "f";
    notes.subject = "Lunch";
    notes.to = "Ann, Bob"; // as it stands
    notes.unid = "0000000000000000000000000000000a";
    notes.date = DateTime(2002, 2, 6, 12, 34, 56);
    const PalmMailRecord palm = toPalmMailRecord(notes);
    EXPECT_EQ(palm.bcc, "d,\n");
    EXPECT_EQ(palm.body, "Hi");
    EXPECT_EQ(palm.cc, "c");
    EXPECT_EQ(palm.from, "a");
    EXPECT_EQ(palm.replyTo, "e");
    EXPECT_EQ(palm.sentTo, "f");
    EXPECT_EQ(palm.subject, "Lunch");
    EXPECT_EQ(palm.to, "Ann, Bob");
    EXPECT_EQ(palm.unid, "0000000000000000000000000000000a");
    EXPECT_EQ(palm.date, DateTime(2002, 2, 6, 12, 34, 56));
    EXPECT_EQ(palm.category(), 0);
    EXPECT_EQ(palm.flags(), 0x8400u); // read, normal priority
    EXPECT_FALSE(palm.archived());
    notes.className = "Drafts";
    EXPECT_EQ(toPalmMailRecord(notes).category(), 4);
}

TEST(MailConversion, PrefersTheBodyOfANotice) {
    NotesMailRecord notes = inboxMail();
    notes.body = "body";
    EXPECT_EQ(toPalmMailRecord(notes).body, "body");
    notes.noticeBody = "notice";
    EXPECT_EQ(toPalmMailRecord(notes).body, "notice");
}

TEST(MailConversion, TurnsImportanceIntoPriority) {
    const std::pair<const char*, std::uint32_t> rows[] = {
        {"1", 0}, {"2", 1}, {"3", 2}, {"", 1}, {"0", 1}, {"4", 1}, {"01", 1}, {"high", 1},
    };
    for (const auto& [importance, priority] : rows) {
        SCOPED_TRACE(importance);
        NotesMailRecord notes = inboxMail();
        notes.importance = importance;
        EXPECT_EQ(toPalmMailRecord(notes).priority(), priority);
    }
}

TEST(MailConversion, TheReadBitIsClearForWhatIsUnread) {
    NotesMailRecord notes = inboxMail();
    EXPECT_TRUE(toPalmMailRecord(notes).isRead());
    notes.unread = true;
    EXPECT_FALSE(toPalmMailRecord(notes).isRead());
}

TEST(MailConversion, ANoticeBringsItsMeeting) {
    NotesMailRecord notes = inboxMail();
    notes.meetingRoom = "7";
    notes.meetingDuration = 60;
    notes.meetingDate = DateTime(2002, 2, 7, 9, 0, 0);
    const PalmMailRecord plain = toPalmMailRecord(notes);
    EXPECT_TRUE(plain.actions.empty());
    EXPECT_EQ(plain.meetingRoom, "");
    EXPECT_EQ(plain.meetingDuration, 0u);
    notes.actions = {"Accept", "Decline"};
    const PalmMailRecord notice = toPalmMailRecord(notes);
    EXPECT_EQ(notice.actions, (Strings{"Accept", "Decline"}));
    EXPECT_EQ(notice.meetingRoom, "7");
    EXPECT_EQ(notice.meetingDuration, 60u);
    EXPECT_EQ(notice.meetingDate, DateTime(2002, 2, 7, 9, 0, 0));
}

TEST(MailConversion, BringsAMessageToNotes) {
    PalmMailRecord palm;
    palm.bcc = "d\nD";
    palm.body = "Hi\nthere";
    palm.cc = "c\nC";
    palm.from = "a\nA";
    palm.replyTo = "e\nE";
    palm.sentTo = "f\nF";
    palm.subject = "Lunch\nor not";
    palm.to = "b\n\nB\n";
    palm.unid = "0000000000000000000000000000000a";
    palm.setWantsSignature(true);
    const NotesMailRecord notes = toNotesMailRecord(palm);
    EXPECT_EQ(notes.bcc, "d,D");
    EXPECT_EQ(notes.body, "Hi\nthere\n\n");
    EXPECT_EQ(notes.cc, "c,C");
    EXPECT_EQ(notes.from, "a,A");
    EXPECT_EQ(notes.replyTo, "e,E");
    EXPECT_EQ(notes.sentTo, "f,F");
    EXPECT_EQ(notes.subject, "Lunch\nor not"); // as it stands
    EXPECT_EQ(notes.to, "b,,B,");
    EXPECT_EQ(notes.unid, ""); // only what is sent off answers another
    EXPECT_EQ(notes.signOption, "N");
}

TEST(MailConversion, TurnsFlagsIntoOptions) {
    for (const bool confirms : {false, true}) {
        PalmMailRecord palm;
        palm.setConfirmsRead(confirms);
        EXPECT_EQ(toNotesMailRecord(palm).returnReceipt, confirms);
        EXPECT_EQ(toNotesMailRecord(palm).deliveryReport, "N");
        palm.setConfirmsRead(!confirms);
        palm.setConfirmsDelivery(confirms);
        EXPECT_EQ(toNotesMailRecord(palm).returnReceipt, !confirms);
        EXPECT_EQ(toNotesMailRecord(palm).deliveryReport, confirms ? "C" : "N");
    }
    const std::pair<std::uint32_t, const char*> priorities[] = {{0, "1"}, {1, "2"}, {2, "3"}, {3, "2"}};
    for (const auto& [priority, importance] : priorities) {
        PalmMailRecord palm;
        palm.setPriority(priority);
        EXPECT_EQ(toNotesMailRecord(palm).importance, importance);
    }
}

TEST(MailConversion, TheTailGrows) {
    const std::pair<std::string, std::size_t> rows[] = {
        // The body, and how many line feeds it gains.
        {"a", 2},       {"a\n", 2},       {"a\n\n", 3}, {"a\n\n\n", 4},
        {"\n\n\na", 2},                                                // those before the text don't count
        {"", 2},        {"\n", 2},        {"\n\n", 2},  {"\n\n\n", 3}, // nothing but line feeds
        {"a\n ", 2},    {"a\r\n\r\n", 2}, // a carriage return is a character like any other
    };
    for (const auto& [body, gain] : rows) {
        SCOPED_TRACE(testing::PrintToString(body));
        PalmMailRecord palm;
        palm.body = body;
        palm.to = "no such text";
        EXPECT_EQ(toNotesMailRecord(palm).body, body + std::string(gain, '\n'));
        EXPECT_EQ(toOutgoingMail(palm, "").body, body + std::string(gain, '\n'));
    }
}

TEST(MailConversion, WhatIsSentOffMayAnswerAnother) {
    PalmMailRecord palm;
    palm.to = "Ann\nBob";
    palm.cc = "c\nC";
    palm.setConfirmsRead(true);
    palm.body = "Yes\n\nAnn\nBob wrote:" + block; // quoted as it stands on the device
    const NotesMailRecord reply = toOutgoingMail(palm, "Carl");
    EXPECT_EQ(reply.unid, "0123abcd");
    EXPECT_EQ(reply.body, "Yes\n\n\n\n\n"); // cut, and the two line feeds gained three
    EXPECT_EQ(reply.to, "Ann,Bob");
    EXPECT_EQ(reply.cc, "c,C");
    EXPECT_TRUE(reply.returnReceipt);

    const NotesMailRecord draft = toNotesMailRecord(palm);
    EXPECT_EQ(draft.unid, "");
    EXPECT_EQ(draft.body, palm.body + "\n\n");
}

TEST(MailConversion, WhatIsSentOffMayBeSigned) {
    PalmMailRecord palm;
    palm.to = "Ann";
    palm.body = "Hi";
    EXPECT_EQ(toOutgoingMail(palm, "Carl").body, "Hi\n\nCarl\n\n");
    palm.body = "Hi\nAnn wrote:\n";
    EXPECT_EQ(toOutgoingMail(palm, "Carl").body, "Hi\n\n\nCarl\n\nAnn wrote:\n\n\n");
    palm.to.clear(); // stands at the start of every text
    EXPECT_EQ(toOutgoingMail(palm, "Carl").body, "\n\nCarl\n\nHi\nAnn wrote:\n\n\n");
    EXPECT_EQ(toOutgoingMail(palm, "Carl").unid, "");
}

} // namespace
} // namespace tsr
