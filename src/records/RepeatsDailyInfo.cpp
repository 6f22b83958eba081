#include "records/RepeatsDailyInfo.h"

namespace tsr {

CountedPtr<RepeatInfo> RepeatsDailyInfo::clone() const { return makeCounted<RepeatsDailyInfo>(*this); }

void RepeatsDailyInfo::addTo(NotesItem& item, const TimeZone&) const { addBasicTo(item, "Day"); }

} // namespace tsr
