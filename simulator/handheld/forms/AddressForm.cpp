#include "handheld/forms/AddressForm.h"

#include <algorithm>
#include <array>

#include "handheld/HandheldError.h"
#include "handheld/RecordReader.h"
#include "handheld/RecordWriter.h"
#include "handheld/forms/fieldText.h"

namespace tsr {

namespace {

constexpr std::size_t phoneSlots = 5;
constexpr std::size_t companyBit = 2;
constexpr std::size_t firstPhoneBit = 3;

// By label.
constexpr std::array<const char*, 8> phoneNames = {"work",  "home", "fax",   "other",
                                                   "email", "main", "pager", "mobile"};

// By bit of the field mask; the phones are null.
constexpr std::array<const char*, 19> fieldNames = {"lastName", "firstName", "company", nullptr,   nullptr,
                                                    nullptr,    nullptr,     nullptr,   "address", "city",
                                                    "state",    "zip",       "country", "title",   "custom1",
                                                    "custom2",  "custom3",   "custom4", "note"};

// The phones of a record in their slots, and which slot the list of addresses shows.
struct Phones {
    std::array<std::uint32_t, phoneSlots> labels{};
    std::array<std::string, phoneSlots> texts;
    std::uint32_t shown = 0;

    std::uint32_t flags() const {
        std::uint32_t flags = shown << 20;
        for (std::size_t slot = 0; slot < phoneSlots; ++slot) flags |= labels[slot] << 4 * slot;
        return flags;
    }
};

void readPhones(const Phones& phones, FieldValues& values) {
    for (std::size_t slot = 0; slot < phoneSlots; ++slot) {
        if (phones.texts[slot].empty()) continue;
        if (phones.labels[slot] >= phoneNames.size()) throw HandheldError("a phone has a label above 7");
        std::string& value = values[phoneNames[phones.labels[slot]]];
        value += (value.empty() ? "" : "\n") + phones.texts[slot];
    }
    const std::uint32_t shown = phones.labels[std::min<std::size_t>(phones.shown, phoneSlots - 1)];
    if (shown < phoneNames.size() && values.contains(phoneNames[shown]))
        values["display"] = phoneNames[shown];
}

// Phones take the slots in the order of their labels; slots without one take the labels that are left.
Phones phonesOf(const FieldValues& values) {
    Phones phones;
    std::size_t slot = 0;
    for (const bool used : {true, false}) {
        for (std::uint32_t label = 0; label < phoneNames.size(); ++label) {
            const std::string text = fieldValue(values, phoneNames[label]);
            if (text.empty() == used) continue;
            if (slot == phoneSlots && used) throw FieldError("an address has at most five phones");
            if (slot == phoneSlots) break;
            phones.labels[slot] = label;
            phones.texts[slot++] = text;
        }
    }
    const std::string display = fieldValue(values, "display");
    while (!display.empty()
           && (phones.texts[phones.shown].empty() || phoneNames[phones.labels[phones.shown]] != display)) {
        if (++phones.shown == phoneSlots)
            throw FieldError("display=" + display + ": a phone that is set is wanted");
    }
    return phones;
}

} // namespace

std::vector<std::string> AddressForm::fields() const {
    std::vector<std::string> names;
    for (std::size_t bit = 0; bit < fieldNames.size(); ++bit) {
        if (bit == firstPhoneBit) names.insert(names.end(), phoneNames.begin(), phoneNames.end());
        if (bit == firstPhoneBit) names.emplace_back("display");
        if (fieldNames[bit]) names.emplace_back(fieldNames[bit]);
    }
    return names;
}

FieldValues AddressForm::read(const std::vector<std::uint8_t>& record) const {
    RecordReader reader(record);
    FieldValues values;
    Phones phones;
    const std::uint32_t flags = reader.number(4);
    const std::uint32_t mask = reader.number(4);
    reader.number(1); // the place of the company
    for (std::size_t bit = 0; bit < fieldNames.size(); ++bit) {
        if ((mask >> bit & 1) == 0) continue;
        if (fieldNames[bit])
            setField(values, fieldNames[bit], reader.string());
        else
            phones.texts[bit - firstPhoneBit] = reader.string();
    }
    for (std::size_t slot = 0; slot < phoneSlots; ++slot) phones.labels[slot] = flags >> 4 * slot & 15;
    phones.shown = flags >> 20 & 15;
    readPhones(phones, values);
    return values;
}

std::vector<std::uint8_t> AddressForm::write(const FieldValues& values) const {
    const Phones phones = phonesOf(values);
    std::uint32_t mask = 0;
    std::size_t companyOffset = 0;
    RecordWriter strings;
    for (std::size_t bit = 0; bit < fieldNames.size(); ++bit) {
        const std::string text =
            fieldNames[bit] ? fieldValue(values, fieldNames[bit]) : phones.texts[bit - firstPhoneBit];
        if (text.empty()) continue;
        if (bit == companyBit) companyOffset = strings.size() + 1;
        mask |= std::uint32_t{1} << bit;
        strings.string(text);
    }
    if (companyOffset > UINT8_MAX) throw FieldError("the name before the company is too long");
    RecordWriter record;
    record.number(4, phones.flags()).number(4, mask).number(1, static_cast<std::uint32_t>(companyOffset));
    return record.bytes(strings.take()).take();
}

} // namespace tsr
