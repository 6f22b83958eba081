#pragma once

#include "records/RepeatInfo.h"

namespace tsr {

// What all rules that repeat have in common.
//
//   property      value
//   "Recurs"      the class's word
//   "Interval"    decimal: days, weeks or months between occurrences
//   "PatternEnd"  "Forever", or minutes since 1601 of the last day's midnight, UTC
class BasicRepeatInfo : public RepeatInfo {
public:
    void setEndDate(const Date& date) override { endDate_ = date; }
    Date endDate() const override { return endDate_; }
    void setForever(bool forever) override { forever_ = forever; }
    bool isForever() const override { return forever_; }
    void setInterval(std::uint32_t interval) override { interval_ = interval; }
    std::uint32_t interval() const override { return interval_; }

protected:
    BasicRepeatInfo() = default;
    // Raises NotUnsigned without an interval, NoPatternEnd without an end.
    explicit BasicRepeatInfo(const NotesItem& item);

    // Adds "Recurs" with `word`, and the interval and the end.
    void addBasicTo(NotesItem& item, const char* word) const;

private:
    bool forever_ = true;
    std::uint32_t interval_ = 1;
    Date endDate_;
};

} // namespace tsr
