#include "tessera/commands/meetingJson.h"

#include "tessera/TesseraError.h"
#include "tessera/commands/readings.h"
#include "tessera/commands/repeatTexts.h"

namespace tsr {

namespace {

using Json = nlohmann::ordered_json;
using std::chrono::sys_days;

std::uint32_t numberOf(const Json& json, const char* name, std::uint32_t most) {
    const auto number = json.at(name).get<std::int64_t>();
    if (number < 0 || number > most)
        throw TesseraError(std::string("a meeting cannot have that many '") + name + "'");
    return static_cast<std::uint32_t>(number);
}

Json ruleJson(const RepeatRule& rule) {
    Json json = {{"unit", unitText(rule.unit)}, {"every", rule.interval}, {"on", ruleDays(rule)}};
    if (rule.until) json["until"] = dateText(*rule.until);
    return json;
}

RepeatRule ruleFromJson(const Json& json, sys_days start) {
    RepeatRule rule;
    rule.unit = parseUnit(json.at("unit").get<std::string>());
    if (json.contains("every")) rule.interval = std::max(1u, numberOf(json, "every", maxRepeatInterval));
    if (json.contains("on")) {
        setRuleDays(rule, json.at("on").get<std::vector<std::string>>());
    } else {
        setDefaultDays(rule, start);
    }
    if (json.contains("until")) rule.until = parseDate(json.at("until").get<std::string>());
    return rule;
}

Json exceptionJson(const EventException& exception) {
    Json json = {{"day", dateText(exception.patternDate)},
                 {"start", momentText(exception.start, asItStands)}};
    if (exception.subject) json["subject"] = *exception.subject;
    if (exception.note) json["note"] = *exception.note;
    if (exception.minutes) json["minutes"] = *exception.minutes;
    if (exception.allDay) json["allDay"] = *exception.allDay;
    return json;
}

EventException exceptionFromJson(const Json& json) {
    EventException exception;
    exception.patternDate = parseDate(json.at("day").get<std::string>());
    exception.start = parseMoment(json.at("start").get<std::string>(), asItStands);
    if (json.contains("subject")) exception.subject = json.at("subject").get<std::string>();
    if (json.contains("note")) exception.note = json.at("note").get<std::string>();
    if (json.contains("minutes")) exception.minutes = numberOf(json, "minutes", UINT32_MAX);
    if (json.contains("allDay")) exception.allDay = json.at("allDay").get<bool>();
    return exception;
}

MeetingPattern patternFromJson(const Json& json, std::int64_t localStart) {
    MeetingPattern pattern;
    pattern.start = localStart;
    pattern.rule = ruleFromJson(json.at("repeats"), dayOf(localStart));
    for (const Json& day : json.value("deletions", Json::array()))
        pattern.deletions.insert(parseDate(day.get<std::string>()));
    for (const Json& exception : json.value("exceptions", Json::array()))
        pattern.exceptions.push_back(exceptionFromJson(exception));
    return pattern;
}

} // namespace

Json meetingJson(const Meeting& meeting, const std::string& start) {
    Json json = {{"subject", meeting.subject},
                 {"start", start},
                 {"minutes", meeting.minutes},
                 {"allDay", meeting.allDay}};
    if (!meeting.note.empty()) json["note"] = meeting.note;
    if (meeting.alarm) json["alarm"] = *meeting.alarm;
    json["private"] = meeting.isPrivate;
    if (!meeting.pattern) return json;
    json["repeats"] = ruleJson(meeting.pattern->rule);
    json["deletions"] = Json::array();
    for (const sys_days day : meeting.pattern->deletions) json["deletions"].push_back(dateText(day));
    json["exceptions"] = Json::array();
    for (const EventException& exception : meeting.pattern->exceptions)
        json["exceptions"].push_back(exceptionJson(exception));
    return json;
}

Meeting meetingFromJson(const Json& json, const ZoneRule& zone) {
    Meeting meeting;
    meeting.subject = json.value("subject", "");
    meeting.start = parseMoment(json.at("start").get<std::string>(), zone);
    meeting.minutes = numberOf(json, "minutes", UINT32_MAX);
    meeting.allDay = json.value("allDay", false);
    meeting.note = json.value("note", "");
    if (json.contains("alarm")) meeting.alarm = numberOf(json, "alarm", UINT32_MAX);
    meeting.isPrivate = json.value("private", false);
    if (json.contains("repeats")) meeting.pattern = patternFromJson(json, zone.toLocal(meeting.start));
    return meeting;
}

} // namespace tsr
