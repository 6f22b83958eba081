#pragma once

#include <cstddef>
#include <cstdint>

#include "foundation/CountedPtr.h"
#include "foundation/Date.h"
#include "foundation/TimeZone.h"
#include "records/DaySpec.h"
#include "server/NotesItem.h"

namespace tsr {

// How an event repeats: a rule apart from its two forms, the eight bytes of a device record and a group of
// properties in a Notes item. There is one class for each way of repeating and one for not repeating at all,
// so that every record has a rule.
//
//   class                     device type  "Recurs"
//   RepeatsNeverInfo          0            absent or empty
//   RepeatsDailyInfo          1            "Day"
//   RepeatsWeeklyInfo         2            "Week"
//   RepeatsMonthlyByDayInfo   3            "MonthNth"
//   RepeatsMonthlyByDateInfo  4            "Month"
//
// An operation that a class does not have raises InternalError.
class RepeatInfo {
public:
    // The rule of an item. The zone is not needed. Raises UnknownRepeatName, and what the classes raise for
    // properties that are missing or make no sense.
    static CountedPtr<RepeatInfo> fromItem(const NotesItem& item, const TimeZone& timeZone);

    // The rule of a device record with its end and interval still to be set; a rule by date falls on the day
    // of `startDate`. Raises UnknownRepeatNumber. The device's yearly repeat, 5, is not known here: records
    // turn it into months.
    static CountedPtr<RepeatInfo> forDeviceType(std::uint32_t type, const Date& startDate);

    virtual ~RepeatInfo() = default;
    virtual CountedPtr<RepeatInfo> clone() const = 0;

    virtual DaySpec daySpec(std::size_t index) const; // raises InvalidDaySpecIndex
    virtual void addDaySpec(std::uint32_t instance, std::uint32_t weekday);
    virtual std::uint32_t dayNumber(std::size_t index) const; // 1 to 31; the index is not checked
    virtual void setDaysOfWeek(std::uint8_t mask);            // bit 0 Sunday to bit 6 Saturday
    virtual std::uint8_t daysOfWeek() const;
    virtual void setEndDate(const Date& date) = 0;
    virtual Date endDate() const = 0; // the last day; counts only where the rule is not forever
    virtual void setForever(bool forever);
    virtual bool isForever() const = 0;
    virtual void setInterval(std::uint32_t interval) = 0; // days, weeks or months between occurrences
    virtual std::uint32_t interval() const = 0;
    virtual bool fitsDevice() const = 0; // whether one pattern of a device record can hold the rule
    virtual bool repeats() const { return true; }
    virtual std::uint8_t deviceType() const = 0;
    // Adds the rule's properties. Raises BeforeUtcStart for an end before 1970, IntegerTruncated for one
    // after the 32 bits of seconds since then. The zone is not needed.
    virtual void addTo(NotesItem& item, const TimeZone& timeZone) const = 0;

protected:
    RepeatInfo() = default;
    RepeatInfo(const RepeatInfo&) = default;
    RepeatInfo& operator=(const RepeatInfo&) = default;

    static constexpr char source[] = "RepeatInfo"; // names the whole family in an InternalError
};

} // namespace tsr
