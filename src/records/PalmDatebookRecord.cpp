#include "records/PalmDatebookRecord.h"

#include "foundation/GeneralError.h"
#include "foundation/deviceDate.h"
#include "foundation/hexadecimal.h"
#include "foundation/narrowing.h"
#include "records/RepeatsNeverInfo.h"

namespace tsr {

namespace {

constexpr std::uint8_t secretAttribute = 0x10;

constexpr std::uint8_t alarmFlag = 0x40;
constexpr std::uint8_t repeatFlag = 0x20;
constexpr std::uint8_t noteFlag = 0x10;
constexpr std::uint8_t exceptionsFlag = 0x08;
constexpr std::uint8_t descriptionFlag = 0x04;

constexpr std::uint8_t noTime = 0xFF;
constexpr std::uint16_t noEndDate = 0xFFFF;

constexpr std::uint8_t weekly = 2;
constexpr std::uint8_t monthlyByDay = 3;
constexpr std::uint8_t monthlyByDate = 4;
constexpr std::uint8_t yearly = 5; // of the device alone: 12 months by date
constexpr std::uint32_t monthsPerYear = 12;
constexpr std::uint32_t daysPerWeek = 7;
constexpr std::uint32_t largestInterval = 255;

constexpr std::uint64_t minutesPerHour = 60;
constexpr std::uint64_t hoursPerDay = 24;
constexpr std::uint64_t minutesPerDay = minutesPerHour * hoursPerDay;

enum AlarmUnit : std::uint8_t { Minutes = 0, Hours = 1, Days = 2 };

struct DeviceAlarm {
    std::uint64_t lead;
    AlarmUnit unit;
};

// The device shows two digits: what needs more goes up to the next unit, rounded.
DeviceAlarm toDeviceAlarm(std::uint64_t minutes) {
    if (minutes == minutesPerHour) return {1, Hours};
    if (minutes < 100) return {minutes, Minutes};
    const std::uint64_t hours = minutes / minutesPerHour + (minutes % minutesPerHour > 30 ? 1 : 0);
    if (hours < 100) return {hours, Hours};
    // Deliberate: the remainder of 60, not of 24. Users know these leads.
    const std::uint64_t days = hours / hoursPerDay + (hours % 60 > 12 ? 1 : 0);
    return {days > 99 ? 99 : days, Days};
}

std::uint64_t minutesOf(std::uint8_t alarmUnit) {
    switch (alarmUnit) {
    case Minutes: return 1;
    case Hours: return minutesPerHour;
    case Days: return minutesPerDay;
    default: throw GeneralError(Message::InvalidAlarmUnits) << Tag('n') << alarmUnit;
    }
}

Date nextMonth(const Date& date, std::uint32_t day) {
    if (date.month() == monthsPerYear) return Date(date.year() + 1, 1, day);
    return Date(date.year(), date.month() + 1, day);
}

std::string textAsHex(const std::string& text) {
    return binaryToHex(std::vector<std::uint8_t>(text.begin(), text.end()));
}

} // namespace

PalmDatebookRecord::PalmDatebookRecord()
    : PalmApplicationRecord(false), repeat_(makeCounted<RepeatsNeverInfo>()),
      description_(makeCounted<const std::string>()), note_(description_) {}

PalmDatebookRecord::PalmDatebookRecord(PalmRecordBuffer& buffer, bool archived)
    : PalmApplicationRecord(buffer, archived), description_(makeCounted<const std::string>()),
      note_(description_) {
    parseTimes(buffer);
    const std::uint8_t flags = buffer.readByte();
    buffer.readByte();
    if ((flags & alarmFlag) != 0) parseAlarm(buffer);
    isPrivate_ = (buffer.attributes() & secretAttribute) != 0;
    repeat_ = RepeatInfo::forDeviceType(0, date_);
    if ((flags & repeatFlag) != 0) parseRepeat(buffer);
    if ((flags & exceptionsFlag) != 0) parseExceptions(buffer);
    if ((flags & descriptionFlag) != 0) setDescription(buffer.readString());
    if ((flags & noteFlag) != 0) setNote(textAsHex(buffer.readString()));
    if (!buffer.atEnd()) throw GeneralError(Message::ExcessData);
}

void PalmDatebookRecord::setDescription(std::string description) {
    description_ = makeCounted<const std::string>(std::move(description));
}

void PalmDatebookRecord::setNote(std::string note) {
    note_ = makeCounted<const std::string>(std::move(note));
}

void PalmDatebookRecord::setAlarm(const TimeInterval& lead) {
    hasAlarm_ = true;
    alarmLead_ = lead;
}

// The date stands behind the times, and is the first of them to fail.
void PalmDatebookRecord::parseTimes(PalmRecordBuffer& buffer) {
    const std::uint8_t startHour = buffer.readByte();
    const std::uint8_t startMinute = buffer.readByte();
    const std::uint8_t endHour = buffer.readByte();
    const std::uint8_t endMinute = buffer.readByte();
    date_ = unpackDate(buffer.readWord());
    allDay_ = startHour == noTime && startMinute == noTime && endHour == noTime && endMinute == noTime;
    if (allDay_) {
        duration_ = TimeInterval::fromDays(1);
        return;
    }
    setTimes(startHour, startMinute, endHour, endMinute);
}

void PalmDatebookRecord::setTimes(std::uint8_t startHour, std::uint8_t startMinute, std::uint8_t endHour,
                                  std::uint8_t endMinute) {
    time_ = TimeOfDay(startHour, startMinute, 0);
    const TimeOfDay end(endHour, endMinute, 0);
    // Deliberate: no Error, so that no handler of errors takes it for its own. It ends the session as an
    // exception of unknown type.
    if (end < time_) throw "?? throw something ??";
    duration_ = end - time_;
}

void PalmDatebookRecord::parseAlarm(PalmRecordBuffer& buffer) {
    const std::uint8_t lead = buffer.readByte();
    const std::uint64_t minutes = lead * minutesOf(buffer.readByte());
    setAlarm(TimeInterval::fromMinutes(static_cast<std::int64_t>(minutes)));
}

void PalmDatebookRecord::parseRepeat(PalmRecordBuffer& buffer) {
    const std::uint8_t type = buffer.readByte();
    repeat_ = RepeatInfo::forDeviceType(type == yearly ? monthlyByDate : type, date_);
    buffer.readByte();
    const std::uint16_t endDate = buffer.readWord();
    repeat_->setForever(endDate == noEndDate);
    if (endDate != noEndDate) repeat_->setEndDate(unpackDate(endDate));
    const std::uint32_t frequency = buffer.readByte();
    repeat_->setInterval(type == yearly ? frequency * monthsPerYear : frequency);
    const std::uint8_t repeatOn = buffer.readByte();
    if (repeat_->deviceType() == weekly) repeat_->setDaysOfWeek(repeatOn);
    if (repeat_->deviceType() == monthlyByDay) {
        repeat_->addDaySpec(repeatOn / daysPerWeek + 1, repeatOn % daysPerWeek);
    }
    buffer.readByte(); // the device's first day of the week
    buffer.readByte();
}

void PalmDatebookRecord::parseExceptions(PalmRecordBuffer& buffer) {
    const std::uint16_t count = buffer.readWord();
    for (std::uint32_t i = 0; i < count; ++i) addException(unpackDate(buffer.readWord()));
}

std::uint16_t PalmDatebookRecord::write(PalmRecordBuffer& buffer) const {
    const std::size_t start = buffer.size();
    writeTimes(buffer);
    const std::size_t dateAt = buffer.size();
    buffer.appendWord(packDate(date_));
    const std::size_t flagsAt = buffer.size();
    buffer.appendWord(0);
    if (isPrivate_) buffer.setAttributes(buffer.attributes() | secretAttribute);

    std::uint8_t flags = 0;
    if (hasAlarm_) {
        flags |= alarmFlag;
        writeAlarm(buffer);
    }
    if (repeat_->repeats()) {
        flags |= repeatFlag;
        buffer.putWord(packDate(patternDate()), dateAt);
        writeRepeat(buffer);
    }
    if (!exceptions_.empty()) {
        flags |= exceptionsFlag;
        writeExceptions(buffer);
    }
    if (!description_->empty()) {
        flags |= descriptionFlag;
        buffer.appendString(*description_);
    }
    // Deliberate: a chair or invitees alone make a note, but do not get into it.
    if (!note_->empty() || !chair_.empty() || !invitees_.empty()) {
        flags |= noteFlag;
        buffer.appendString(*note_);
    }
    buffer.putByte(flags, flagsAt);
    return buffer.crc(start);
}

void PalmDatebookRecord::writeTimes(PalmRecordBuffer& buffer) const {
    if (allDay_) {
        for (int i = 0; i < 4; ++i) buffer.appendByte(noTime);
        return;
    }
    const TimeOfDay end = time_ + duration_;
    buffer.appendByte(static_cast<std::uint8_t>(time_.hour()));
    buffer.appendByte(static_cast<std::uint8_t>(time_.minute()));
    buffer.appendByte(static_cast<std::uint8_t>(end.hour()));
    buffer.appendByte(static_cast<std::uint8_t>(end.minute()));
}

void PalmDatebookRecord::writeAlarm(PalmRecordBuffer& buffer) const {
    const DeviceAlarm alarm = toDeviceAlarm(narrowToUnsignedWide(alarmLead_.minutes()));
    buffer.appendByte(static_cast<std::uint8_t>(alarm.lead));
    buffer.appendByte(alarm.unit);
}

// The device takes the day of a month from the record's date: the first day of that number from `date` on.
Date PalmDatebookRecord::patternDate() const {
    if (repeat_->deviceType() != monthlyByDate) return date_;
    const std::uint32_t day = repeat_->dayNumber(0);
    Date date = date_;
    date.setDay(day);
    return date < date_ ? nextMonth(date_, day) : date;
}

void PalmDatebookRecord::writeRepeat(PalmRecordBuffer& buffer) const {
    buffer.appendByte(repeat_->deviceType());
    buffer.appendByte(0);
    buffer.appendWord(repeat_->isForever() ? noEndDate : packDate(repeat_->endDate()));
    const std::uint32_t interval = repeat_->interval();
    if (interval > largestInterval) {
        throw GeneralError(Message::UnsuitableRepeatInterval)
            << Tag('n') << interval << Tag('s') << *description_;
    }
    buffer.appendByte(static_cast<std::uint8_t>(interval));
    buffer.appendByte(repeatOn());
    buffer.appendWord(0);
}

std::uint8_t PalmDatebookRecord::repeatOn() const {
    if (repeat_->deviceType() == weekly) return repeat_->daysOfWeek();
    if (repeat_->deviceType() != monthlyByDay) return 0;
    const DaySpec spec = repeat_->daySpec(0);
    return static_cast<std::uint8_t>((spec.instance - 1) * daysPerWeek + spec.weekday);
}

// A count that the word can't hold needs more bytes of dates than a record has.
void PalmDatebookRecord::writeExceptions(PalmRecordBuffer& buffer) const {
    buffer.appendWord(static_cast<std::uint16_t>(exceptions_.size()));
    for (const Date& date : exceptions_) buffer.appendWord(packDate(date));
}

} // namespace tsr
