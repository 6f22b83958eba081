#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tsr {

// What a message tells of a meeting, besides the body that it has then.
struct MeetingNotice {
    std::string body;                 // shown in the place of the message's own
    std::vector<std::string> actions; // what can be done with it, such as "Accept", besides "Reply"
    std::string room;
    std::uint32_t minutes = 0; // of the meeting
};

// A message of a user's mail database. Addresses are names of users or whatever else stands for somebody, one
// a value.
struct Mail {
    enum Importance { High = 1, Normal, Low };

    std::string folder; // one of mailDocument.h
    bool unread = false;
    std::string from;
    std::string replyTo;
    std::vector<std::string> to;
    std::vector<std::string> cc;
    std::vector<std::string> bcc;
    std::string subject;
    std::string body;
    std::int64_t date = 0; // when it was sent, and of a notice when its meeting starts; seconds since 1970
    int importance = Normal;
    bool returnReceipt = false;  // wanted when it is read
    bool deliveryReport = false; // wanted when it arrives
    std::string answers;         // UNID of the message that it answers, in the mail of its sender
    std::optional<MeetingNotice> notice;
};

} // namespace tsr
