#pragma once

#include <string>
#include <vector>

namespace tsr {

// The pieces between the separators; empty pieces are left out.
std::vector<std::string> splitOn(const std::string& text, char separator);
std::vector<std::string> splitLines(const std::string& text); // at line feeds

// The strings that aren't empty, with one line feed between two of them.
std::string joinLines(const std::vector<std::string>& list);

// Each carriage return, with a line feed directly behind it if there is one, becomes one `replacement`. A
// lone line feed stays.
std::string normalizeLineEnds(const std::string& text, char replacement = '\n');

// The characters up to the next line feed, behind any line feeds at the very start.
std::string firstLine(const std::string& text);

// Erases as many characters as firstLine() has, and one more, from position 0 on. Deliberate: line feeds at
// the start count as if they were the line, so that a part of it stays.
void removeFirstLine(std::string& text);

std::string lineFeedsToCommas(std::string text);

} // namespace tsr
