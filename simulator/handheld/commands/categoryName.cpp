#include "handheld/commands/categoryName.h"

#include <algorithm>
#include <charconv>
#include <optional>

#include "handheld/CategoryTable.h"
#include "handheld/HandheldError.h"
#include "handheld/commands/CommandLine.h"
#include "handheld/commands/handheldText.h"

namespace tsr {

namespace {

bool isSame(const std::string& a, const std::string& b) {
    const auto lowered = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [&](char left, char right) { return lowered(left) == lowered(right); });
}

std::string nameOf(HandheldDatabase& database, std::uint8_t category) {
    try {
        return CategoryTable(database).name(category);
    } catch (const HandheldError&) {
        return {}; // a database without a table
    }
}

std::optional<std::uint8_t> numberOf(const std::string& text) {
    unsigned number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || number >= HandheldRecord::categories)
        return std::nullopt;
    return static_cast<std::uint8_t>(number);
}

} // namespace

std::uint8_t parseCategory(HandheldDatabase& database, const std::string& text) {
    if (const auto number = numberOf(text)) return *number;
    const std::string name = toHandheldText(text);
    for (std::uint8_t category = 0; category < HandheldRecord::categories && !name.empty(); ++category) {
        if (isSame(nameOf(database, category), name)) return category;
    }
    throw UsageError(database.name() + " has no category " + text + ": give a name of its table, or 0 to 15");
}

std::string categoryText(HandheldDatabase& database, std::uint8_t category) {
    const std::string name = nameOf(database, category);
    return name.empty() ? std::to_string(category) : fromHandheldText(name);
}

} // namespace tsr
