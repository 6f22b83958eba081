#include "tessera/bodyCut.h"

#include <algorithm>

#include "tessera/numbers.h"
#include "tessera/unicode.h"

namespace tsr {

namespace {

constexpr char lineBegin[] = "----- ";
constexpr char lineEnd[] = " more characters are in Notes -----";

bool isWithinPair(const std::u16string& units, std::size_t at) {
    return (units[at] & 0xFC00) == 0xDC00 || (units[at] == u'\n' && units[at - 1] == u'\r');
}

struct CutLine {
    std::size_t begin;
    std::size_t end; // behind it
    std::uint32_t missing;
};

std::optional<CutLine> findLine(const std::string& text) {
    const std::size_t end = text.rfind(lineEnd);
    if (end == std::string::npos) return std::nullopt;
    const std::size_t begin = text.rfind(lineBegin, end);
    if (begin == std::string::npos) return std::nullopt;
    const std::size_t digits = begin + sizeof lineBegin - 1;
    if (digits > end) return std::nullopt;
    const auto missing = parseNumber(text.substr(digits, end - digits));
    if (!missing) return std::nullopt;
    return CutLine{begin, end + sizeof lineEnd - 1, *missing};
}

std::string lastUnits(const std::string& text, std::size_t count) {
    const std::u16string units = toUtf16(text);
    std::size_t begin = units.size() - std::min(count, units.size());
    if (begin > 0 && begin < units.size() && isWithinPair(units, begin)) ++begin;
    return toUtf8(units.substr(begin));
}

} // namespace

std::string cutText(const std::string& text, std::size_t limit) {
    const std::u16string units = toUtf16(text);
    if (units.size() <= limit) return text;
    if (limit > 0 && isWithinPair(units, limit)) --limit;
    return toUtf8(units.substr(0, limit)) + '\n' + lineBegin + std::to_string(units.size() - limit) + lineEnd
         + '\n';
}

std::optional<std::string> completedText(const std::string& sent, const std::string& whole) {
    const auto line = findLine(sent);
    if (!line) return std::nullopt;
    std::string begin = sent.substr(0, line->begin);
    if (begin.ends_with('\n')) begin.pop_back(); // in front of the line
    const std::size_t behind = sent.find_first_not_of('\n', line->end);
    const std::string added = behind == std::string::npos ? "" : sent.substr(line->end);
    return begin + lastUnits(whole, line->missing) + added;
}

} // namespace tsr
