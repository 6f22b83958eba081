#include "records/PalmDummyRecord.h"

#include "foundation/internalError.h"

namespace tsr {

namespace {

constexpr char source[] = "PalmDummyRec";

} // namespace

std::uint8_t PalmDummyRecord::category() const { throw internalError(source, __LINE__); }

std::string PalmDummyRecord::description() const { throw internalError(source, __LINE__); }

std::uint16_t PalmDummyRecord::write(PalmRecordBuffer&) const { throw internalError(source, __LINE__); }

} // namespace tsr
