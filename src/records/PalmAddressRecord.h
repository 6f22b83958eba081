#pragma once

#include <cstdint>
#include <string>

#include "records/AddressPhones.h"
#include "records/AddressTexts.h"
#include "records/PalmApplicationRecord.h"

namespace tsr {

// One Address record of the handheld. The secret attribute is neither read nor set.
//
//   offset  size  field
//   0       4     phone flags, see AddressPhones
//   4       4     field mask: which of the texts are there
//   8       1     0 without a company, else where its text begins, counted from this byte; the low byte of it
//   9             the texts in the order of their bits, each ends with a NUL; the record ends with the last
//
//   bits of the mask
//   0 to 2        last name, first name, company
//   3 to 7        phones
//   8 to 12       address, city, state, zip, country
//   13            title, a line for each value
//   14 to 17      the four custom fields
//   18            note
class PalmAddressRecord : public PalmApplicationRecord, public AddressTexts, public AddressPhones {
public:
    PalmAddressRecord() : PalmApplicationRecord(false) {}

    // Parses the whole of `buffer`. Raises IntegerUnderrun, MissingNul, InvalidPhoneLabel, or ExcessData for
    // bytes after the last text.
    PalmAddressRecord(PalmRecordBuffer& buffer, bool archived);

    void setCategory(std::uint32_t index); // raises InvalidCategory above 15

    std::uint8_t category() const override { return static_cast<std::uint8_t>(category_); }
    std::string description() const override { return fullName(); }
    std::uint16_t write(PalmRecordBuffer& buffer) const override;

    std::string note;

private:
    std::uint32_t category_ = 0;
};

} // namespace tsr
