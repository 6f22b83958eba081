#include "records/AddressPhones.h"

#include <algorithm>

#include "foundation/lines.h"

namespace tsr {

namespace {

constexpr std::uint32_t slotCount = 5;
constexpr std::uint32_t displayShift = 20;

// The labels that slots without a phone take, each once.
constexpr std::int32_t labelsForFreeSlots[] = {WorkPhone,   HomePhone,  FaxPhone,   EmailPhone,
                                               MobilePhone, PagerPhone, OtherPhone, MainPhone};

// Slots count from 0.
constexpr std::uint32_t textBit(std::uint32_t slot) { return 1u << (3 + slot); }

std::int32_t labelOfSlot(std::uint32_t phoneFlags, std::uint32_t slot) {
    return static_cast<std::int32_t>(phoneFlags >> 4 * slot & 0xF);
}

std::uint32_t labelBits(std::int32_t label, std::uint32_t slot) {
    return static_cast<std::uint32_t>(label) << 4 * slot;
}

} // namespace

void AddressPhones::addPhones(std::int32_t label, const std::vector<std::string>& values) {
    if (values.empty() || entries_.size() >= slotCount) return;
    for (PhoneEntry& entry : entries_) {
        if (entry.label != label) continue;
        entry.values.insert(entry.values.end(), values.begin(), values.end());
        return;
    }
    entries_.push_back({label, values});
}

std::vector<std::string> AddressPhones::phones(std::int32_t label) const {
    std::vector<std::string> all;
    for (const PhoneEntry& entry : entries_) {
        if (entry.label == label) all.insert(all.end(), entry.values.begin(), entry.values.end());
    }
    return all;
}

bool AddressPhones::hasPhone(std::int32_t label) const {
    return std::any_of(entries_.begin(), entries_.end(),
                       [label](const PhoneEntry& entry) { return entry.label == label; });
}

std::int32_t AddressPhones::firstPhoneLabel() const { return entries_.empty() ? 0 : entries_.front().label; }

void AddressPhones::setDisplayLabel(std::int32_t label) { displayLabel_ = checkedPhoneLabel(label); }

void AddressPhones::setDisplayFromLetter(const std::string& letters) {
    const auto label = letters.empty() ? std::nullopt : labelOfPhoneLetter(letters.front());
    displayLabel_ = label && hasPhone(*label) ? *label : firstPhoneLabel();
}

void AddressPhones::readPhones(PalmRecordBuffer& buffer, std::uint32_t phoneFlags, std::uint32_t fieldMask) {
    entries_.reserve(slotCount);
    for (std::uint32_t slot = 0; slot < slotCount; ++slot) {
        if ((fieldMask & textBit(slot)) == 0) continue;
        std::vector<std::string> values = splitLines(buffer.readString());
        if (values.empty()) continue;
        entries_.push_back({checkedPhoneLabel(labelOfSlot(phoneFlags, slot)), std::move(values)});
    }
    const std::uint32_t index = std::min(phoneFlags >> displayShift & 0xF, slotCount - 1);
    setDisplayLabel(labelOfSlot(phoneFlags, index)); // also that of a slot without a phone
}

std::uint32_t AddressPhones::writePhones(PalmRecordBuffer& buffer, std::uint32_t& fieldMask) const {
    std::uint32_t phoneFlags = displayIndex() << displayShift;
    std::uint32_t slot = 0;
    std::uint32_t usedLabels = 0;
    for (const PhoneEntry& entry : entries_) {
        if (slot == slotCount) break;
        const std::string text = joinLines(entry.values);
        if (text.empty()) continue;
        buffer.appendString(text);
        fieldMask |= textBit(slot);
        phoneFlags |= labelBits(entry.label, slot++);
        usedLabels |= 1u << entry.label;
    }
    for (const std::int32_t label : labelsForFreeSlots) {
        if (slot == slotCount) break;
        if ((usedLabels >> label & 1) == 0) phoneFlags |= labelBits(label, slot++);
    }
    return phoneFlags;
}

// Deliberate: counts entries, where the handheld counts slots. An entry without a text shifts it.
std::uint32_t AddressPhones::displayIndex() const {
    for (std::uint32_t index = 0; index < entries_.size(); ++index) {
        if (entries_[index].label == displayLabel_) return index;
    }
    return 0;
}

} // namespace tsr
