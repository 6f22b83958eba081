#include "records/NotesMailRecord.h"

#include "foundation/Error.h"
#include "foundation/TimeStamp.h"
#include "foundation/epochs.h"
#include "foundation/numbers.h"

namespace tsr {

namespace {

constexpr char unidName[] = "UNID";
constexpr char answeredName[] = "#UNID";
constexpr char dateName[] = "Date";
constexpr char replyAction[] = "Reply";

struct TextProperty {
    const char* name;
    std::string NotesMailRecord::*text;
};
using Record = NotesMailRecord;

constexpr TextProperty received[] = {
    {"Bcc", &Record::bcc},
    {"Body", &Record::body},
    {"Cc", &Record::cc},
    {"From", &Record::from},
    {"Importance", &Record::importance},
    {"NoticeBody", &Record::noticeBody},
    {"ReplyTo", &Record::replyTo},
    {"Subject", &Record::subject},
    {"To", &Record::to},
    {unidName, &Record::unid},
    {"#ClassName", &Record::className},
};

constexpr TextProperty sent[] = {
    {"Bcc", &Record::bcc},   {"Body", &Record::body},       {"Cc", &Record::cc},
    {"From", &Record::from}, {"ReplyTo", &Record::replyTo}, {"Subject", &Record::subject},
    {"To", &Record::to},     {answeredName, &Record::unid},
};

DateTime requiredDate(const NotesItem& item, const TimeZone& timeZone) {
    const std::uint32_t seconds = parseUnsigned(firstValue(item, dateName));
    return DateTime(TimeStamp(1, toSeconds1970(seconds)), timeZone);
}

std::vector<std::string> actionsOf(const NotesItem& item) {
    if (!hasProperty(item, "ActionList")) return {};
    std::vector<std::string> actions = item.at("ActionList");
    std::erase(actions, "");
    std::erase(actions, replyAction);
    return actions;
}

} // namespace

NotesMailRecord::NotesMailRecord()
    : date(Date(1970, 1, 1), TimeOfDay()), meetingDate(Date(1970, 1, 1), TimeOfDay()) {}

NotesMailRecord::NotesMailRecord(const NotesItem& item, const TimeZone& timeZone) : NotesMailRecord() {
    for (const TextProperty& property : received) this->*property.text = normalizedValue(item, property.name);
    date = requiredDate(item, timeZone);
    unread = normalizedValue(item, "Unread") == "1";
    actions = actionsOf(item);
    if (!actions.empty()) readMeeting(item, timeZone);
}

// What a notice tells of its meeting badly is left out.
void NotesMailRecord::readMeeting(const NotesItem& item, const TimeZone& timeZone) {
    meetingRoom = normalizedValue(item, "Room");
    try {
        meetingDuration = parseUnsigned(firstValue(item, "Duration"));
    } catch (const Error&) {
        meetingDuration = 0;
    }
    meetingDate = requiredDate(item, timeZone); // as above, where a bad one would have raised
}

void NotesMailRecord::addTo(NotesItem& item, const TimeZone&) const {
    for (const TextProperty& property : sent) addValue(item, property.name, this->*property.text);
}

} // namespace tsr
