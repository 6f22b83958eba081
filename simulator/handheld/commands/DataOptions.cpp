#include "handheld/commands/DataOptions.h"

#include <charconv>

#include "handheld/HandheldError.h"
#include "handheld/HandheldFolder.h"
#include "handheld/commands/handheldText.h"

namespace tsr {

namespace {

std::vector<std::uint8_t> parseHex(std::string text) {
    std::erase_if(text, [](char c) { return c == ' ' || c == '\n'; });
    std::vector<std::uint8_t> data;
    for (std::size_t at = 0; at < text.size(); at += 2) {
        std::uint8_t byte = 0;
        const char* digits = text.data() + at;
        if (at + 1 == text.size() || std::from_chars(digits, digits + 2, byte, 16).ptr != digits + 2) {
            throw UsageError("--hex takes pairs of hexadecimal digits");
        }
        data.push_back(byte);
    }
    return data;
}

std::vector<std::uint8_t> readData(const std::string& file) {
    try {
        return readFile(file);
    } catch (const HandheldError& error) {
        throw HandheldError(file + ": " + error.what());
    }
}

} // namespace

void DataOptions::addTo(CLI::App& command) {
    auto* asText =
        command.add_option("--text", text, "The content as text; a NUL is added, as a memo wants it");
    auto* asHex = command.add_option("--hex", hex,
                                     "The content as pairs of hexadecimal digits, with or without blanks");
    auto* asFile = command.add_option("--file", file, "The content as it stands in a file");
    asText->excludes(asHex)->excludes(asFile);
    asHex->excludes(asFile);
}

std::vector<std::uint8_t> DataOptions::data() const {
    std::vector<std::uint8_t> data;
    if (text) {
        const std::string narrow = toHandheldText(*text);
        data.assign(narrow.begin(), narrow.end());
        data.push_back(0);
    } else if (hex) {
        data = parseHex(*hex);
    } else if (file) {
        data = readData(*file);
    } else {
        throw UsageError("give the content with fields, --text, --hex or --file");
    }
    if (data.size() > HandheldRecord::maxBytes)
        throw UsageError("a record or preference takes at most 65,535 bytes");
    return data;
}

std::uint32_t parseRecordId(const std::string& text) {
    const bool hexadecimal = text.starts_with("0x") || text.starts_with("0X");
    const char* begin = text.data() + (hexadecimal ? 2 : 0);
    std::uint32_t id = 0;
    const auto [end, error] = std::from_chars(begin, text.data() + text.size(), id, hexadecimal ? 16 : 10);
    if (error != std::errc() || end != text.data() + text.size() || id == 0 || id > HandheldRecord::maxId) {
        throw UsageError(text
                         + " is no record id: give it as handheld show prints it, 0x001201, or in decimal");
    }
    return id;
}

} // namespace tsr
