#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "foundation/DateTime.h"
#include "records/NotesApplicationRecord.h"

namespace tsr {

// One message of the Notes mail database.
//
//   property                         value
//   "Bcc", "Cc", "From", "ReplyTo",  text
//     "Subject", "To", "Body"
//   "NoticeBody", "Importance"       text; read only
//   "#ClassName"                     of the class that the message came through; read only
//   "UNID"                           identity, 32 digits; read only
//   "#UNID"                          identity of the message that is answered; sent only
//   "Date"                           seconds since 1993, a moment; read only
//   "Unread"                         "1" for a message that wasn't read; read only
//   "ActionList"                     what can be done with a notice of a meeting; read only
//   "Room", "Duration"               of the meeting; read of a notice alone
//
// Line ends of what is read become LF, but for those of actions.
// All that is sent is sent also when it is empty.
class NotesMailRecord : public NotesApplicationRecord {
public:
    NotesMailRecord();

    // Raises NotUnsigned for a message without a date. "Duration" of a notice may be missing or bad.
    NotesMailRecord(const NotesItem& item, const TimeZone& timeZone);

    void addTo(NotesItem& item, const TimeZone& timeZone) const override;
    std::string description() const override { return subject; }

    std::string bcc;
    std::string body;
    std::string cc;
    std::string deliveryReport = "N"; // "C" where delivery is to be confirmed; an option of outgoing mail
    std::string signOption = "N";     // likewise
    std::string from;
    std::string importance = "2"; // "1" high, "3" low
    std::string noticeBody;
    std::string replyTo;
    std::string sentTo; // carried along
    std::string subject;
    std::string to;
    std::string unid;
    DateTime date;              // on the clock of the user's zone; 1970-01-01 at first
    bool returnReceipt = false; // an option of outgoing mail
    std::string className;
    bool unread = false;
    std::vector<std::string> actions;  // without "Reply"; a message with any is a notice
    DateTime meetingDate;              // as `date`
    std::uint32_t meetingDuration = 0; // in the server's units
    std::string meetingRoom;

private:
    void readMeeting(const NotesItem& item, const TimeZone& timeZone);
};

} // namespace tsr
