#include "tessera/commands/mailTexts.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "tessera/commands/ArgumentError.h"
#include "tessera/commands/readings.h"
#include "tessera/mailDocument.h"

namespace tsr {

namespace {

using Json = nlohmann::ordered_json;
using Texts = std::vector<std::string>;

constexpr std::array<const char*, 3> importances = {"high", "normal", "low"}; // from Mail::High on
constexpr std::array<const char*, 3> folders = {inboxFolder, draftsFolder, sentFolder};

std::string lowered(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return text;
}

Json noticeJson(const MeetingNotice& notice) {
    return {{"body", notice.body},
            {"actions", notice.actions},
            {"room", notice.room},
            {"minutes", notice.minutes}};
}

MeetingNotice noticeFromJson(const Json& json) {
    MeetingNotice notice;
    notice.body = json.value("body", "");
    notice.actions = json.value("actions", Texts());
    notice.room = json.value("room", "");
    const std::int64_t minutes = json.value("minutes", std::int64_t{0});
    if (minutes < 0 || minutes > UINT32_MAX) throw ArgumentError("the minutes of a notice are none");
    notice.minutes = static_cast<std::uint32_t>(minutes);
    return notice;
}

} // namespace

std::string importanceText(int importance) {
    return importances.at(static_cast<std::size_t>(importance - Mail::High));
}

int parsedImportance(const std::string& text) {
    const auto* const found = std::find(importances.begin(), importances.end(), text);
    if (found == importances.end())
        throw ArgumentError("'" + text + "' is not an importance: high, normal or low");
    return static_cast<int>(found - importances.begin()) + Mail::High;
}

std::string parsedFolder(const std::string& text) {
    for (const char* folder : folders) {
        if (lowered(folder) == lowered(text)) return folder;
    }
    throw ArgumentError("'" + text + "' is not a folder: Inbox, Drafts or Sent");
}

Json mailJson(const Mail& mail, const std::string& date) {
    Json json = {{"folder", mail.folder},
                 {"unread", mail.unread},
                 {"from", mail.from},
                 {"replyTo", mail.replyTo},
                 {"to", mail.to},
                 {"cc", mail.cc},
                 {"bcc", mail.bcc},
                 {"subject", mail.subject},
                 {"body", mail.body},
                 {"date", date},
                 {"importance", importanceText(mail.importance)},
                 {"returnReceipt", mail.returnReceipt},
                 {"deliveryReport", mail.deliveryReport}};
    if (!mail.answers.empty()) json["answers"] = mail.answers;
    if (mail.notice) json["notice"] = noticeJson(*mail.notice);
    return json;
}

Mail mailFromJson(const Json& json) {
    Mail mail;
    mail.folder = parsedFolder(json.value("folder", inboxFolder));
    mail.unread = json.value("unread", false);
    mail.from = json.value("from", "");
    mail.replyTo = json.value("replyTo", "");
    mail.to = json.value("to", Texts());
    mail.cc = json.value("cc", Texts());
    mail.bcc = json.value("bcc", Texts());
    mail.subject = json.value("subject", "");
    mail.body = json.value("body", "");
    mail.date = parseMoment(json.at("date").get<std::string>(), ZoneRule());
    mail.importance = parsedImportance(json.value("importance", "normal"));
    mail.returnReceipt = json.value("returnReceipt", false);
    mail.deliveryReport = json.value("deliveryReport", false);
    mail.answers = json.value("answers", "");
    if (json.contains("notice")) mail.notice = noticeFromJson(json.at("notice"));
    return mail;
}

} // namespace tsr
