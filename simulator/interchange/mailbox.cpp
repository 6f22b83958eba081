#include "interchange/mailbox.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string_view>

#include "interchange/InterchangeError.h"
#include "interchange/calendarDays.h"
#include "interchange/messageFile.h"

namespace tsr {

namespace {

constexpr std::string_view mark = "From ";

// "From " behind any number of ">".
bool looksLikeMark(std::string_view line) {
    const std::size_t first = line.find_first_not_of('>');
    return first != std::string_view::npos && line.substr(first).starts_with(mark);
}

bool isEmpty(std::string_view line) { return line.empty() || line == "\r"; }

// The messages with their lines as they were written.
std::vector<std::string> splitMailbox(const std::string& text) {
    std::vector<std::string> messages;
    bool mayBegin = true;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find('\n', at), text.size());
        std::string_view line(text.data() + at, end - at);
        at = end + 1;
        if (mayBegin && line.starts_with(mark)) {
            messages.emplace_back();
        } else if (messages.empty()) {
            if (!isEmpty(line)) throw InterchangeError("a mailbox begins with a line 'From '");
        } else {
            if (line.starts_with('>') && looksLikeMark(line)) line.remove_prefix(1);
            messages.back().append(line).append("\n");
        }
        mayBegin = isEmpty(line);
    }
    return messages;
}

// The empty line before the next message belongs to the file.
std::string withoutLastLine(std::string message) {
    if (message.ends_with("\n\r\n")) message.resize(message.size() - 2);
    if (message.ends_with("\n\n")) message.pop_back();
    return message;
}

// "Mon Nov 23 08:00:00 2026", in UTC.
std::string markDate(std::int64_t seconds) {
    static constexpr const char* weekdays[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
    static constexpr const char* months[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                             "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    const std::chrono::sys_days day = dayOf(seconds);
    const std::chrono::year_month_day date(day);
    const auto second = static_cast<int>(seconds - secondsOf(day));
    char text[40];
    std::snprintf(text, sizeof text, "%s %s %2u %02d:%02d:%02d %04d",
                  weekdays[std::chrono::weekday(day).c_encoding()],
                  months[static_cast<unsigned>(date.month()) - 1], static_cast<unsigned>(date.day()),
                  second / 3600, second / 60 % 60, second % 60, static_cast<int>(date.year()));
    return text;
}

// The address between < and >, else the word that programs know for nobody.
std::string markSender(const std::string& from) {
    const std::size_t begin = from.rfind('<') + 1; // 0 when there is none
    const std::string address = from.substr(begin, from.find('>', begin) - begin);
    const bool isAddress =
        address.find('@') != std::string::npos
        && std::all_of(address.begin(), address.end(), [](char c) { return c > ' ' && c < '\x7F'; });
    return isAddress ? address : "MAILER-DAEMON";
}

std::string quoted(const std::string& message) {
    std::string lines;
    for (std::size_t at = 0; at < message.size();) {
        const std::size_t end = std::min(message.find('\n', at), message.size());
        const std::string_view line(message.data() + at, end - at);
        if (looksLikeMark(line)) lines += '>';
        lines.append(line).append("\n");
        at = end + 1;
    }
    std::erase(lines, '\r');
    return lines;
}

} // namespace

std::vector<MailMessage> readMailbox(const std::string& text) {
    std::vector<MailMessage> messages;
    for (const std::string& message : splitMailbox(text)) {
        try {
            messages.push_back(readMessage(withoutLastLine(message)));
        } catch (const InterchangeError& error) {
            throw InterchangeError("message " + std::to_string(messages.size() + 1) + ": " + error.what());
        }
    }
    return messages;
}

std::string mailboxText(const std::vector<MailMessage>& messages) {
    std::string text;
    for (const MailMessage& message : messages) {
        text += std::string(mark) + markSender(message.from) + " " + markDate(message.date.value_or(0)) + "\n"
              + quoted(messageText(message)) + "\n";
    }
    return text;
}

} // namespace tsr
