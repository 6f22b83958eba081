#include "records/RepeatsNeverInfo.h"

#include "foundation/internalError.h"

namespace tsr {

CountedPtr<RepeatInfo> RepeatsNeverInfo::clone() const { return makeCounted<RepeatsNeverInfo>(*this); }

void RepeatsNeverInfo::setEndDate(const Date&) { throw internalError(source, __LINE__); }

Date RepeatsNeverInfo::endDate() const { throw internalError(source, __LINE__); }

bool RepeatsNeverInfo::isForever() const { throw internalError(source, __LINE__); }

void RepeatsNeverInfo::setInterval(std::uint32_t) { throw internalError(source, __LINE__); }

std::uint32_t RepeatsNeverInfo::interval() const { throw internalError(source, __LINE__); }

} // namespace tsr
