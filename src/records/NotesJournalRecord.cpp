#include "records/NotesJournalRecord.h"

namespace tsr {

namespace {

constexpr char differencesName[] = "#Differences";
constexpr char subjectName[] = "Subject";
constexpr char bodyName[] = "Body";
constexpr char categoryName[] = "Category";

} // namespace

NotesJournalRecord::NotesJournalRecord(const NotesItem& item, const TimeZone&)
    : body(normalizedValue(item, bodyName)), subject(firstValue(item, subjectName)) {
    if (hasProperty(item, categoryName)) categories = item.at(categoryName);
}

void NotesJournalRecord::addTo(NotesItem& item, const TimeZone&) const {
    addValue(item, differencesName, "0");
    addValue(item, subjectName, subject);
    addValue(item, bodyName, body);
    for (const std::string& category : categories) addValue(item, categoryName, category);
}

} // namespace tsr
