#include "records/NotesAddressRecord.h"

#include "foundation/lines.h"

namespace tsr {

namespace {

constexpr char titleName[] = "Title";
constexpr char listedName[] = "PalmListed";
constexpr char preferredName[] = "PalmPreferred";
constexpr char categoryName[] = "Category";

struct TextProperty {
    const char* name;
    std::string NotesAddressRecord::*text;
};
using Record = NotesAddressRecord;
constexpr TextProperty texts[] = {
    {"Address", &Record::address},   {"City", &Record::city},       {"Company", &Record::company},
    {"Country", &Record::country},   {"Custom1", &Record::custom1}, {"Custom2", &Record::custom2},
    {"Custom3", &Record::custom3},   {"Custom4", &Record::custom4}, {"FirstName", &Record::firstName},
    {"LastName", &Record::lastName}, {"Body", &Record::body},       {"State", &Record::state},
    {"Zip", &Record::zip},
};

constexpr const char* phoneNames[phoneLabelCount] = {"Work",  "Home", "Fax",   "Other",
                                                     "Email", "Main", "Pager", "Mobile"}; // by label

std::vector<std::string> normalizedValues(const NotesItem& item, const std::string& name) {
    const auto found = item.find(name);
    if (found == item.end()) return {};
    std::vector<std::string> values;
    for (const std::string& value : found->second) {
        if (!value.empty()) values.push_back(normalizeLineEnds(value));
    }
    return values;
}

void addValues(NotesItem& item, const std::string& name, const std::vector<std::string>& values) {
    for (const std::string& value : values) {
        if (!value.empty()) addValue(item, name, value);
    }
}

} // namespace

NotesAddressRecord::NotesAddressRecord(const NotesItem& item, const TimeZone&) {
    for (const TextProperty& property : texts) this->*property.text = normalizedValue(item, property.name);
    title = normalizedValues(item, titleName);
    for (std::size_t label = 0; label < phones.size(); ++label)
        phones[label] = normalizedValues(item, phoneNames[label]);
    palmListed = firstValue(item, listedName);
    palmPreferred = firstValue(item, preferredName);
    if (hasProperty(item, categoryName)) categories = item.at(categoryName);
}

// Deliberate: has no "#Differences", which every other record sends.
void NotesAddressRecord::addTo(NotesItem& item, const TimeZone&) const {
    for (const TextProperty& property : texts) addValue(item, property.name, this->*property.text);
    addValues(item, titleName, title);
    for (std::size_t label = 0; label < phones.size(); ++label) {
        const char letter = phoneLetter(static_cast<std::int32_t>(label));
        if (palmListed.find(letter) != std::string::npos) addValues(item, phoneNames[label], phones[label]);
    }
    addValue(item, listedName, palmListed);
    addValue(item, preferredName, palmPreferred);
    for (const std::string& category : categories) addValue(item, categoryName, category);
}

} // namespace tsr
