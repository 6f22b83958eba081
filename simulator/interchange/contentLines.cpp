#include "interchange/contentLines.h"

#include <cctype>

#include "interchange/InterchangeError.h"

namespace tsr {

namespace {

constexpr std::size_t maxBytes = 75;

std::string inCapitals(std::string text) {
    for (char& c : text) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return text;
}

struct RawLine {
    std::string text;
    std::size_t number;
};

std::vector<RawLine> unfolded(const std::string& text) {
    std::vector<RawLine> lines;
    std::size_t number = 0;
    for (std::size_t at = 0; at < text.size();) {
        std::size_t end = text.find('\n', at);
        if (end == std::string::npos) end = text.size();
        std::string line = text.substr(at, end - at);
        at = end + 1;
        ++number;
        if (!line.empty() && line.back() == '\r') line.pop_back();
        const bool continues = !line.empty() && (line.front() == ' ' || line.front() == '\t');
        if (continues && !lines.empty()) {
            lines.back().text += line.substr(1);
        } else if (!line.empty()) {
            lines.push_back({line, number});
        }
    }
    return lines;
}

// Reads from `at` to the next of `ends` outside quotation marks, which are left out.
std::string token(const RawLine& line, std::size_t& at, const std::string& ends) {
    std::string text;
    bool quoted = false;
    for (; at < line.text.size(); ++at) {
        const char c = line.text[at];
        if (!quoted && ends.find(c) != std::string::npos) return text;
        if (c == '"') {
            quoted = !quoted;
        } else {
            text += c;
        }
    }
    throw InterchangeError("line " + std::to_string(line.number) + " has no value");
}

ContentLine parsed(const RawLine& raw) {
    ContentLine line;
    line.number = raw.number;
    std::size_t at = 0;
    const std::string name = token(raw, at, ";:");
    line.name = inCapitals(name.substr(name.rfind('.') + 1));
    while (raw.text[at] == ';') {
        ++at;
        std::string parameter = inCapitals(token(raw, at, "=;:"));
        if (raw.text[at] != '=') { // old files leave TYPE= out
            line.parameters.emplace_back("TYPE", parameter);
            continue;
        }
        do {
            ++at;
            line.parameters.emplace_back(parameter, token(raw, at, ",;:"));
        } while (raw.text[at] == ',');
    }
    line.value = raw.text.substr(at + 1);
    return line;
}

bool continuesCharacter(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

} // namespace

std::vector<ContentLine> readContentLines(const std::string& text) {
    std::vector<ContentLine> lines;
    for (const RawLine& raw : unfolded(text)) lines.push_back(parsed(raw));
    return lines;
}

std::string foldedLine(const std::string& line) {
    std::string text;
    std::size_t bytes = 0;
    for (std::size_t at = 0; at < line.size();) {
        std::size_t end = at + 1;
        while (end < line.size() && continuesCharacter(line[end])) ++end;
        if (bytes + (end - at) > maxBytes) {
            text += "\r\n ";
            bytes = 1;
        }
        text += line.substr(at, end - at);
        bytes += end - at;
        at = end;
    }
    return text + "\r\n";
}

std::string escaped(const std::string& text) {
    std::string value;
    for (const char c : text) {
        if (c == '\n') {
            value += "\\n";
            continue;
        }
        if (c == '\\' || c == ',' || c == ';') value += '\\';
        value += c;
    }
    return value;
}

std::string unescaped(const std::string& value) {
    std::string text;
    for (std::size_t i = 0; i < value.size(); ++i) {
        if (value[i] == '\\' && i + 1 < value.size()) {
            ++i;
            text += value[i] == 'n' || value[i] == 'N' ? '\n' : value[i];
        } else {
            text += value[i];
        }
    }
    return text;
}

std::vector<std::string> splitValue(const std::string& value, char separator) {
    std::vector<std::string> pieces(1);
    for (std::size_t i = 0; i < value.size(); ++i) {
        if (value[i] == separator) {
            pieces.emplace_back();
            continue;
        }
        pieces.back() += value[i];
        if (value[i] == '\\' && i + 1 < value.size()) pieces.back() += value[++i];
    }
    for (std::string& piece : pieces) piece = unescaped(piece);
    return pieces;
}

} // namespace tsr
