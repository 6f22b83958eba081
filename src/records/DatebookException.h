#pragma once

#include <string>
#include <utility>

#include "foundation/Date.h"
#include "foundation/TimeInterval.h"
#include "foundation/TimeOfDay.h"

namespace tsr {

// One changed instance of a repeating meeting, as Notes tells it: where it would have been, where it is now,
// and what else differs from the meeting. Ordered by where it is now.
class DatebookException {
public:
    Date patternDate; // on which the pattern would have put it
    Date date;
    TimeOfDay time;

    bool hasSubject() const { return hasSubject_; } // this and the next three: differs from the meeting
    bool hasBody() const { return hasBody_; }
    bool hasAllDay() const { return hasAllDay_; }
    bool hasDuration() const { return hasDuration_; }

    const std::string& subject() const { return subject_; }
    const std::string& body() const { return body_; }
    bool allDay() const { return allDay_; }
    const TimeInterval& duration() const { return duration_; }

    void setSubject(std::string subject) {
        subject_ = std::move(subject);
        hasSubject_ = true;
    }
    void setBody(std::string body) {
        body_ = std::move(body);
        hasBody_ = true;
    }
    void setAllDay(bool allDay) {
        allDay_ = allDay;
        hasAllDay_ = true;
    }
    void setDuration(const TimeInterval& duration) {
        duration_ = duration;
        hasDuration_ = true;
    }

    friend bool operator<(const DatebookException& left, const DatebookException& right) {
        return left.date < right.date;
    }

private:
    bool hasSubject_ = false;
    bool hasBody_ = false;
    bool hasAllDay_ = false;
    bool hasDuration_ = false;
    std::string subject_;
    std::string body_;
    bool allDay_ = false;
    TimeInterval duration_;
};

} // namespace tsr
