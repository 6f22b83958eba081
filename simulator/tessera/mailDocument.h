#pragma once

#include "tessera/Mail.h"
#include "tessera/Store.h"

namespace tsr {

// A message is kept as a document of the kind "mail" in its owner's mail database, with the properties that
// the handheld's Mail is given:
//
//   From, ReplyTo, Subject, Body
//   To, Cc, Bcc     one value an address
//   Date            seconds since 1993: when it was sent, and of a notice when its meeting starts
//   Importance      1 high, 2 normal, 3 low
//   NoticeBody, ActionList (one value an action), Room, Duration (minutes)   of a notice of a meeting
//
// and others, which it is not given as they are:
//
//   Folder          "Inbox", "Drafts" or "Sent", of which the last is for the server alone
//   Unread          "1" when it is; it isn't part of what the sequence number counts
//   ReturnReceipt, DeliveryReport   "1" when they are wanted
//   Answers         UNID of the message that it answers
//   Cut             "1" when the handheld was last given less than the whole body
//
// What is empty isn't there, but for Folder, Date and Importance.
inline constexpr char mailKind[] = "mail";
inline constexpr char inboxFolder[] = "Inbox";
inline constexpr char draftsFolder[] = "Drafts";
inline constexpr char sentFolder[] = "Sent";

namespace mailProperties {
inline constexpr char actions[] = "ActionList";
inline constexpr char answers[] = "Answers";
inline constexpr char bcc[] = "Bcc";
inline constexpr char body[] = "Body";
inline constexpr char cc[] = "Cc";
inline constexpr char cut[] = "Cut";
inline constexpr char date[] = "Date";
inline constexpr char deliveryReport[] = "DeliveryReport";
inline constexpr char duration[] = "Duration";
inline constexpr char folder[] = "Folder";
inline constexpr char from[] = "From";
inline constexpr char importance[] = "Importance";
inline constexpr char noticeBody[] = "NoticeBody";
inline constexpr char replyTo[] = "ReplyTo";
inline constexpr char returnReceipt[] = "ReturnReceipt";
inline constexpr char room[] = "Room";
inline constexpr char subject[] = "Subject";
inline constexpr char to[] = "To";
inline constexpr char unread[] = "Unread";
} // namespace mailProperties

Mail toMail(const Properties& properties);

// Sets the properties that a Mail knows and leaves the others. Raises TesseraError for an unknown folder or
// importance, and for a date that 32 bits of seconds since 1993 can't hold.
void setMail(Properties& properties, const Mail& mail);

// Into the user's folder of that name. One that is delivered is unread, a draft is not.
Document deliver(Store& store, std::int64_t userId, Mail mail);
Document saveDraft(Store& store, std::int64_t userId, Mail mail);

// Leaves the sequence number: handhelds compare the mark by itself. Raises TesseraError where there is no
// such message.
void markUnread(Store& store, std::int64_t userId, const std::string& unid, bool unread);

// The messages of one folder, oldest document first.
std::vector<Document> mailIn(Store& store, std::int64_t userId, const std::string& folder);

} // namespace tsr
