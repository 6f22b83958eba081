#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tsr {

// A mail as people know it. Texts are UTF-8, lines end with a line feed. An address is as it is typed,
// "Pat Lee <pat@example.com>", or a name of Notes without '@'.
struct MailMessage {
    enum class Importance { High = 1, Normal, Low };

    std::string from{};
    std::vector<std::string> replyTo{};
    std::vector<std::string> to{};
    std::vector<std::string> cc{};
    std::vector<std::string> bcc{};
    std::string subject{};
    std::optional<std::int64_t> date{}; // seconds since 1970, UTC
    std::int32_t zoneMinutes = 0;       // east of UTC, of the clock that the date was written by
    std::string body{};
    Importance importance = Importance::Normal;
    bool isRead = false;
    std::string id{};        // by which other programs know it, without < and >
    std::string inReplyTo{}; // the id of the message that it answers

    bool operator==(const MailMessage&) const = default;
};

} // namespace tsr
