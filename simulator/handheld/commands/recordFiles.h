#pragma once

#include <cstdint>
#include <string>

#include "handheld/Handheld.h"
#include "interchange/Event.h"
#include "interchange/vCard.h"

namespace tsr {

// The records of a handheld in files of other programs. What is imported is added as if the user had typed
// it; a category that isn't there takes a free place of the table, or else the record is in none. All raise
// HandheldError, FieldError, InterchangeError or UsageError, and then the handheld may have a part of it.

inline constexpr char contactDatabase[] = "AddressDB";
inline constexpr char taskDatabase[] = "ToDoDB";
inline constexpr char eventDatabase[] = "DatebookDB";

void importContacts(Handheld& handheld, const std::string& vCards);
std::string exportedContacts(HandheldDatabase& database, VCardVersion version);

void importTasks(Handheld& handheld, const std::string& calendar);
std::string exportedTasks(HandheldDatabase& database,
                          std::int64_t stamp); // the moment, in seconds since 1970

// Gives the reasons why events could not be held, each with its subject. Times are taken as they stand in
// their own zones.
std::vector<std::string> importEvents(Handheld& handheld, const std::string& calendar);
std::string exportedEvents(HandheldDatabase& database, std::int64_t stamp);
std::vector<Event> eventsOf(HandheldDatabase& database); // without records that make none

// Any database whose records have fields:
//   {"database": "MemoDB", "records": [{"category": "Home", "secret": false, "fields": {"text": "Milk"}}]}
void importRecords(Handheld& handheld, const std::string& json);
std::string exportedRecords(HandheldDatabase& database);

} // namespace tsr
