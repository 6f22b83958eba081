#include "records/RepeatsMonthlyByDayInfo.h"

#include <algorithm>
#include <locale>
#include <sstream>

#include "foundation/GeneralError.h"
#include "foundation/numbers.h"
#include "records/meetingProperties.h"

namespace tsr {

namespace {

constexpr char nthName[] = "Nth.";
constexpr std::uint32_t mostSpecs = 31;
constexpr std::uint32_t fourth = 4;
constexpr std::uint32_t last = 5;
constexpr std::uint32_t saturday = 6;

// "2.3". Lax: blanks before each of the three pieces are skipped, and what follows is not looked at. An
// instance of 0 passes.
DaySpec parseDaySpec(const std::string& text) {
    std::istringstream stream(text);
    stream.imbue(std::locale::classic()); // the host's own may group digits
    DaySpec spec{};
    char separator = 0;
    stream >> spec.instance >> separator >> spec.weekday;
    if (!stream || spec.instance > last || separator != '.' || spec.weekday > saturday) {
        throw GeneralError(Message::InvalidDaySpec) << Tag('s') << text;
    }
    return spec;
}

} // namespace

RepeatsMonthlyByDayInfo::RepeatsMonthlyByDayInfo(const NotesItem& item) : BasicRepeatInfo(item) {
    for (std::uint32_t n = 1; n <= mostSpecs; ++n) {
        const std::string name = numberedName(nthName, n);
        if (!hasProperty(item, name)) break;
        daySpecs_.push_back(parseDaySpec(firstValue(item, name)));
    }
    removeFourthsBesideLasts();
    if (daySpecs_.empty()) throw GeneralError(Message::NoDaySpecs);
}

// The fourth and the last of a weekday are the same day in most months: they count as one, and the last wins.
void RepeatsMonthlyByDayInfo::removeFourthsBesideLasts() {
    const std::vector<DaySpec> specs = daySpecs_;
    for (const DaySpec& spec : specs) {
        if (spec.instance == last) std::erase(daySpecs_, DaySpec{fourth, spec.weekday});
    }
}

CountedPtr<RepeatInfo> RepeatsMonthlyByDayInfo::clone() const {
    return makeCounted<RepeatsMonthlyByDayInfo>(*this);
}

DaySpec RepeatsMonthlyByDayInfo::daySpec(std::size_t index) const {
    if (index >= daySpecs_.size()) throw GeneralError(Message::InvalidDaySpecIndex) << Tag('n') << index;
    return daySpecs_[index];
}

void RepeatsMonthlyByDayInfo::addDaySpec(std::uint32_t instance, std::uint32_t weekday) {
    daySpecs_.push_back({instance, weekday});
}

void RepeatsMonthlyByDayInfo::addTo(NotesItem& item, const TimeZone&) const {
    addBasicTo(item, "MonthNth");
    std::uint32_t n = 0;
    for (const DaySpec& spec : daySpecs_) {
        addValue(item, numberedName(nthName, ++n), toDecimal(spec.instance) + '.' + toDecimal(spec.weekday));
    }
}

} // namespace tsr
