#include "interchange/htmlText.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <glib.h>
#include <map>
#include <string_view>

namespace tsr {

namespace {

constexpr std::size_t longestEntity = 12;

const std::map<std::string_view, std::uint32_t> entities = {
    {"amp", '&'},      {"lt", '<'},       {"gt", '>'},       {"quot", '"'},     {"apos", '\''},
    {"nbsp", ' '},     {"copy", 0xA9},    {"reg", 0xAE},     {"laquo", 0xAB},   {"raquo", 0xBB},
    {"deg", 0xB0},     {"middot", 0xB7},  {"auml", 0xE4},    {"ouml", 0xF6},    {"uuml", 0xFC},
    {"Auml", 0xC4},    {"Ouml", 0xD6},    {"Uuml", 0xDC},    {"szlig", 0xDF},   {"eacute", 0xE9},
    {"egrave", 0xE8},  {"agrave", 0xE0},  {"ccedil", 0xE7},  {"ndash", 0x2013}, {"mdash", 0x2014},
    {"lsquo", 0x2018}, {"rsquo", 0x2019}, {"ldquo", 0x201C}, {"rdquo", 0x201D}, {"hellip", 0x2026},
    {"bull", 0x2022},  {"euro", 0x20AC}};

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\f'; }
char lowered(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool isOneOf(const std::string& name, std::initializer_list<std::string_view> names) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

void appendUtf8(std::string& text, std::uint32_t code) {
    constexpr std::uint32_t replacement = 0xFFFD;
    const bool isCharacter = code != 0 && g_unichar_validate(code) != 0;
    char bytes[6];
    text.append(bytes, static_cast<std::size_t>(g_unichar_to_utf8(isCharacter ? code : replacement, bytes)));
}

// Reads a page once from its front to its end.
class Page {
public:
    explicit Page(const std::string& html) : html_(html) {}

    std::string text() {
        while (at_ < html_.size()) readPiece();
        while (text_.ends_with('\n')) text_.pop_back();
        return text_;
    }

private:
    void readPiece() {
        const char c = html_[at_];
        const char next = at_ + 1 < html_.size() ? html_[at_ + 1] : ' ';
        if (c == '<' && (isLetter(next) || next == '/' || next == '!' || next == '?'))
            readTag();
        else if (c == '&')
            readEntity();
        else
            readCharacter();
    }

    void readCharacter() {
        const char c = html_[at_++];
        if (isBlank(c))
            blankIsDue_ = true;
        else
            put(std::string(1, c));
    }

    void readEntity() {
        const std::string piece = html_.substr(at_ + 1, longestEntity);
        const std::size_t end = piece.find(';');
        std::string character;
        if (end == std::string::npos || !decode(piece.substr(0, end), character)) {
            readCharacter();
            return;
        }
        at_ += end + 2;
        put(character);
    }

    static bool decode(const std::string& name, std::string& character) {
        if (!name.starts_with('#')) {
            const auto found = entities.find(name);
            if (found == entities.end()) return false;
            appendUtf8(character, found->second);
            return true;
        }
        const bool hexadecimal = name.starts_with("#x") || name.starts_with("#X");
        const char* const begin = name.data() + (hexadecimal ? 2 : 1);
        const char* const end = name.data() + name.size();
        std::uint32_t code = 0;
        const auto parsed = std::from_chars(begin, end, code, hexadecimal ? 16 : 10);
        if (parsed.ec != std::errc() || parsed.ptr != end) return false;
        appendUtf8(character, code);
        return true;
    }

    void readTag() {
        if (html_.compare(at_, 4, "<!--") == 0) {
            skipPast("-->");
            return;
        }
        std::size_t i = at_ + 1;
        const bool closes = html_[i] == '/';
        if (closes) ++i;
        std::string name;
        while (i < html_.size() && !isBlank(html_[i]) && html_[i] != '>' && html_[i] != '/')
            name += lowered(html_[i++]);
        skipPast(">");
        if (!closes && isOneOf(name, {"script", "style", "head", "title"})) skipElement(name);
        lay(name, closes);
    }

    void lay(const std::string& name, bool closes) {
        if (name == "br") {
            text_ += '\n';
            blankIsDue_ = false;
        } else if (isOneOf(name, {"p", "h1", "h2", "h3", "h4", "h5", "h6", "blockquote", "table", "ul", "ol",
                                  "pre", "hr"})) {
            endLine(2);
        } else if (isOneOf(name, {"div", "tr", "li", "body", "dt", "dd"})) {
            endLine(1);
            if (name == "li" && !closes) text_ += "- ";
        } else if (name == "td" || name == "th") {
            blankIsDue_ = true;
        }
    }

    void skipPast(const char* mark) {
        const std::size_t found = html_.find(mark, at_);
        at_ = found == std::string::npos ? html_.size() : found + std::string_view(mark).size();
    }

    // Past the end of an element whose content isn't text; one without an end is passed over with all behind
    // it.
    void skipElement(const std::string& name) {
        const std::string mark = "</" + name;
        const auto end =
            std::search(html_.begin() + static_cast<std::ptrdiff_t>(at_), html_.end(), mark.begin(),
                        mark.end(), [](char a, char b) { return lowered(a) == b; });
        at_ = static_cast<std::size_t>(end - html_.begin());
        skipPast(">");
    }

    void put(const std::string& character) {
        if (blankIsDue_ && !text_.empty() && !text_.ends_with('\n') && !text_.ends_with(' ')) text_ += ' ';
        blankIsDue_ = false;
        text_ += character;
    }

    // Not at the very beginning, where nothing has to be kept apart.
    void endLine(std::size_t lineFeeds) {
        blankIsDue_ = false;
        if (text_.empty()) return;
        while (text_.size() < lineFeeds || !text_.ends_with(std::string(lineFeeds, '\n'))) text_ += '\n';
    }

    const std::string& html_;
    std::size_t at_ = 0;
    std::string text_;
    bool blankIsDue_ = false;
};

} // namespace

std::string htmlText(const std::string& html) { return Page(html).text(); }

} // namespace tsr
