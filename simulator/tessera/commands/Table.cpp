#include "tessera/commands/Table.h"

#include <algorithm>

#include "tessera/commands/shown.h"

namespace tsr {

namespace {

std::size_t width(const std::string& text) {
    return static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char byte) { return (byte & 0xC0) != 0x80; }));
}

} // namespace

std::ostream& operator<<(std::ostream& stream, const Table& table) {
    std::vector<std::size_t> widths(table.rows_.front().size());
    for (const auto& row : table.rows_) {
        for (std::size_t i = 0; i < row.size(); ++i)
            widths[i] = std::max(widths[i], width(shownLine(row[i])));
    }
    for (const auto& row : table.rows_) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            const std::string text = shownLine(row[i]);
            const bool last = i + 1 == row.size();
            stream << text << (last ? "\n" : std::string(widths[i] - width(text) + 2, ' '));
        }
    }
    return stream;
}

} // namespace tsr
