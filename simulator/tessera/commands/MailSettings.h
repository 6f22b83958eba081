#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tessera/Mail.h"
#include "tessera/commands/TesseraCommandLine.h"

namespace tsr {

// The options of `add mail` and `edit mail`; what isn't given leaves a message as it is.
class MailSettings {
public:
    CLI::Option* addTo(CLI::App& command); // gives the option that a new message can't do without

    // All but the mark of what has been read, which is no change of the message.
    bool changesContent() const;
    void apply(const TesseraCommandLine& line, Mail& mail,
               const ZoneRule& zone) const; // raises ArgumentError
    const std::optional<bool>& unread() const { return unread_; }

private:
    bool changesNotice() const { return noticeBody_ || actions_ || room_ || minutes_; }
    void applyNotice(Mail& mail) const;

    std::optional<std::string> from_;
    std::optional<std::string> replyTo_;
    std::optional<std::vector<std::string>> to_;
    std::optional<std::vector<std::string>> cc_;
    std::optional<std::vector<std::string>> bcc_;
    std::optional<std::string> subject_;
    std::optional<std::string> body_;
    std::optional<std::string> file_;
    std::optional<std::string> date_;
    std::optional<std::string> importance_;
    std::optional<bool> unread_;
    std::optional<std::string> noticeBody_;
    std::optional<std::vector<std::string>> actions_;
    std::optional<std::string> room_;
    std::optional<std::uint32_t> minutes_;
};

} // namespace tsr
