#pragma once

#include "records/PalmApplicationRecord.h"

namespace tsr {

// Stands in the place of a device record that could not be parsed. It is refused where its turn comes: asking
// it for anything raises InternalError.
class PalmDummyRecord : public PalmApplicationRecord {
public:
    PalmDummyRecord() : PalmApplicationRecord(false) {}

    std::uint8_t category() const override;
    std::string description() const override;
    std::uint16_t write(PalmRecordBuffer& buffer) const override;
};

} // namespace tsr
