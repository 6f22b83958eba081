#include "foundation/lines.h"

#include <algorithm>

namespace tsr {

namespace {

constexpr char lineFeed = '\n';
constexpr char carriageReturn = '\r';

} // namespace

std::vector<std::string> splitOn(const std::string& text, char separator) {
    std::vector<std::string> pieces;
    std::size_t start = 0;
    while ((start = text.find_first_not_of(separator, start)) != std::string::npos) {
        const std::size_t end = std::min(text.find(separator, start), text.size());
        pieces.push_back(text.substr(start, end - start));
        start = end;
    }
    return pieces;
}

std::vector<std::string> splitLines(const std::string& text) { return splitOn(text, lineFeed); }

std::string joinLines(const std::vector<std::string>& list) {
    std::string text;
    for (const std::string& line : list) {
        if (line.empty()) continue;
        if (!text.empty()) text += lineFeed;
        text += line;
    }
    return text;
}

std::string normalizeLineEnds(const std::string& text, char replacement) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != carriageReturn) {
            result += text[i];
            continue;
        }
        result += replacement;
        if (i + 1 < text.size() && text[i + 1] == lineFeed) ++i;
    }
    return result;
}

std::string firstLine(const std::string& text) {
    const std::size_t start = text.find_first_not_of(lineFeed);
    if (start == std::string::npos) return {};
    return text.substr(start, text.find(lineFeed, start) - start);
}

void removeFirstLine(std::string& text) {
    const std::size_t start = text.find_first_not_of(lineFeed);
    const std::size_t end = start == std::string::npos ? start : text.find(lineFeed, start);
    if (end == std::string::npos) {
        text.clear();
        return;
    }
    text.erase(0, end - start + 1);
}

std::string lineFeedsToCommas(std::string text) {
    std::replace(text.begin(), text.end(), lineFeed, ',');
    return text;
}

} // namespace tsr
