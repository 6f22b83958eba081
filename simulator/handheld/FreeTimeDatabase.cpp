#include "handheld/FreeTimeDatabase.h"

#include <algorithm>
#include <map>

#include "handheld/HandheldError.h"
#include "handheld/RecordReader.h"
#include "handheld/RecordWriter.h"
#include "handheld/knownDatabases.h"

namespace tsr {

namespace {

constexpr std::uint8_t searchCategory = 1;
constexpr std::uint8_t colleagueCategory = 3;
constexpr std::uint8_t weekCategory = 4;

template <typename Work>
void forCategory(const HandheldDatabase& database, std::uint8_t category, Work work) {
    database.records().forEach([&](const HandheldRecord& record) {
        if (record.category == category && !record.isGone()) work(record);
    });
}

// Year - 1904 in bits 15 to 9, month in 8 to 5, day in 4 to 0.
std::chrono::sys_days unpackDate(std::uint32_t packed) {
    const std::chrono::year_month_day date{std::chrono::year(1904 + static_cast<int>(packed >> 9)),
                                           std::chrono::month(packed >> 5 & 15),
                                           std::chrono::day(packed & 31)};
    if (!date.ok()) throw HandheldError("a week of VellumFreetime starts on a day that does not exist");
    return date;
}

FreeWeek readWeek(RecordReader& reader) {
    FreeWeek week;
    week.start = unpackDate(reader.number(2));
    const std::vector<std::uint8_t> bitmap = reader.bytes(FreeWeek::slots / 8);
    for (std::size_t slot = 0; slot < FreeWeek::slots; ++slot) {
        week.free[slot] = (bitmap[slot / 8] & 0x80 >> slot % 8) != 0;
    }
    return week;
}

std::string nameOf(const HandheldRecord& record) {
    RecordReader reader(record.data);
    reader.number(1);
    return reader.string();
}

std::vector<std::uint8_t> searchRecord(std::uint16_t length) {
    return RecordWriter().number(2, length).number(1, 0).take();
}

} // namespace

void FreeTimeDatabase::create(Handheld& handheld) {
    if (handheld.find(databaseName)) return;
    HandheldDatabase& database = handheld.create(databaseName, type, vellumCreator);
    database.addRecord(searchRecord(defaultSearchLength), searchCategory);
}

FreeTimeDatabase::FreeTimeDatabase(Handheld& handheld)
    : database_([&]() -> HandheldDatabase& {
          if (HandheldDatabase* database = handheld.find(databaseName)) return *database;
          throw HandheldError("there is no free-time database yet: add a colleague first");
      }()) {}

std::vector<Colleague> FreeTimeDatabase::colleagues() const {
    std::map<std::uint32_t, Colleague> byId;
    forCategory(database_, colleagueCategory,
                [&](const HandheldRecord& record) { byId[record.id].name = nameOf(record); });
    forCategory(database_, weekCategory, [&](const HandheldRecord& record) {
        RecordReader reader(record.data);
        std::vector<FreeWeek>& weeks = byId[reader.number(4)].weeks;
        weeks.push_back(readWeek(reader));
    });
    std::vector<Colleague> all;
    for (auto& [id, colleague] : byId) {
        colleague.id = id;
        std::sort(colleague.weeks.begin(), colleague.weeks.end(),
                  [](const FreeWeek& a, const FreeWeek& b) { return a.start < b.start; });
        all.push_back(std::move(colleague));
    }
    return all;
}

void FreeTimeDatabase::add(const std::string& name) {
    if (name.empty()) throw HandheldError("a colleague needs a name");
    forCategory(database_, colleagueCategory, [&](const HandheldRecord& record) {
        if (nameOf(record) == name) throw HandheldError(name + " is on the list already");
    });
    const auto data = RecordWriter().number(1, 0).string(name).take();
    if (data.size() > HandheldRecord::maxBytes) throw HandheldError("the name is too long");
    if (database_.addRecord(data, colleagueCategory) == 0) throw HandheldError("VellumFreetime is full");
}

// The application keeps no trace of a person: the conduit misses the record and takes the weeks away.
void FreeTimeDatabase::remove(const std::string& name) {
    std::uint32_t id = 0;
    forCategory(database_, colleagueCategory, [&](const HandheldRecord& record) {
        if (nameOf(record) == name) id = record.id;
    });
    if (!database_.eraseRecord(id)) throw HandheldError(name + " is not on the list");
}

void FreeTimeDatabase::setSearchLength(std::uint16_t length) {
    std::uint32_t id = 0;
    forCategory(database_, searchCategory,
                [&](const HandheldRecord& record) { id = id == 0 ? record.id : id; });
    if (id != 0)
        database_.editRecord(id, searchRecord(length));
    else
        database_.addRecord(searchRecord(length), searchCategory);
}

} // namespace tsr
