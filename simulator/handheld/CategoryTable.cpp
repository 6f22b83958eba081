#include "handheld/CategoryTable.h"

#include <algorithm>

#include "handheld/HandheldError.h"

namespace tsr {

namespace {

constexpr std::size_t fieldBytes = CategoryTable::longestName + 1;
constexpr std::size_t namesEnd = 2 + HandheldRecord::categories * fieldBytes;

constexpr std::size_t offsetOf(std::size_t category) { return 2 + category * fieldBytes; }

void put(std::vector<std::uint8_t>& block, std::size_t category, const std::string& name) {
    const auto field = block.begin() + static_cast<std::ptrdiff_t>(offsetOf(category));
    std::fill_n(field, fieldBytes, std::uint8_t{0});
    std::copy(name.begin(), name.end(), field);
}

} // namespace

std::vector<std::uint8_t> CategoryTable::newBlock(const std::vector<std::string>& names) {
    std::vector<std::uint8_t> block(namesEnd);
    for (std::size_t category = 0; category < names.size(); ++category) put(block, category, names[category]);
    for (std::uint8_t id = 0; id < HandheldRecord::categories; ++id) block.push_back(id);
    block.push_back(HandheldRecord::categories - 1);
    block.push_back(0);
    return block;
}

CategoryTable::CategoryTable(HandheldDatabase& database) : database_(database) {
    if (!database.appInfo() || database.appInfo()->size() < namesEnd) {
        throw HandheldError(database.name() + " has no categories");
    }
}

std::string CategoryTable::name(std::uint8_t category) const {
    const auto field = database_.appInfo()->begin() + static_cast<std::ptrdiff_t>(offsetOf(category));
    return {field, std::find(field, field + longestName, std::uint8_t{0})};
}

void CategoryTable::rename(std::uint8_t category, const std::string& name) {
    if (name.empty()) throw HandheldError("a category has a name");
    if (name.size() > longestName) throw HandheldError("the name of a category takes at most 15 characters");
    for (std::uint8_t other = 0; other < HandheldRecord::categories; ++other) {
        if (other != category && this->name(other) == name) {
            throw HandheldError("category " + std::to_string(other) + " has this name");
        }
    }
    write(category, name);
}

std::uint8_t CategoryTable::findOrAdd(const std::string& name) {
    for (const std::string& wanted : {name, std::string()}) {
        for (std::uint8_t category = 0; category < HandheldRecord::categories; ++category) {
            if (this->name(category) != wanted) continue;
            if (wanted.empty()) rename(category, name);
            return category;
        }
    }
    return 0;
}

void CategoryTable::remove(std::uint8_t category) {
    write(category, {});
    for (const HandheldRecord& record : database_.records().all()) {
        if (record.category == category) database_.moveRecord(record.id, 0);
    }
}

void CategoryTable::write(std::uint8_t category, const std::string& name) {
    if (category == 0) throw HandheldError("category 0 keeps its name");
    std::vector<std::uint8_t> block = *database_.appInfo();
    put(block, category, name);
    block[category < 8 ? 1 : 0] |= static_cast<std::uint8_t>(1U << category % 8); // big-endian
    database_.setAppInfo(std::move(block));
}

} // namespace tsr
