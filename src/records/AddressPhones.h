#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "device/PalmRecordBuffer.h"
#include "records/phoneLabels.h"

namespace tsr {

struct PhoneEntry {
    std::int32_t label;
    std::vector<std::string> values;

    bool operator==(const PhoneEntry&) const = default;
};

// The phones of a contact on the handheld, which has five slots for them: a label, 0 to 7, and a text each,
// of one line for each value. The phone of one label is displayed.
//
// In a record the texts stand one behind the other, those of empty slots left out. The phone flags tell the
// rest: the label of slot 1 in bits 3 to 0, and so on up to slot 5 in bits 19 to 16, and the display index,
// the number of a slot from 0 on, in bits 23 to 20. Bit 3 of the record's field mask stands for the text of
// slot 1, bit 7 for that of slot 5.
class AddressPhones {
public:
    const std::vector<PhoneEntry>& phoneEntries() const { return entries_; }

    // Adds `values` to the entry of the label, or as a new one. Does nothing when there are five entries
    // already, also for a label that is among them.
    void addPhones(std::int32_t label, const std::vector<std::string>& values);

    std::vector<std::string> phones(std::int32_t label) const; // of all entries of that label
    bool hasPhone(std::int32_t label) const;
    std::int32_t firstPhoneLabel() const; // 0 when there is no entry

    std::int32_t displayLabel() const { return displayLabel_; }
    void setDisplayLabel(std::int32_t label); // raises InvalidPhoneLabel

    // Displays the phone that the first of `letters` stands for, or else the first one.
    void setDisplayFromLetter(const std::string& letters);

protected:
    AddressPhones() = default;

    // The texts come from the buffer's cursor. Raises MissingNul, and InvalidPhoneLabel for the label of a
    // text or of the displayed slot.
    void readPhones(PalmRecordBuffer& buffer, std::uint32_t phoneFlags, std::uint32_t fieldMask);

    // Appends the texts, sets their bits in `fieldMask`, and returns the phone flags.
    std::uint32_t writePhones(PalmRecordBuffer& buffer, std::uint32_t& fieldMask) const;

private:
    std::uint32_t displayIndex() const;

    std::vector<PhoneEntry> entries_;
    std::int32_t displayLabel_ = 0;
};

} // namespace tsr
