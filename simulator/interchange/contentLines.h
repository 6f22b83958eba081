#pragma once

#include <string>
#include <utility>
#include <vector>

namespace tsr {

// One line of a vCard: NAME;PARAMETER=VALUE:VALUE. Names are in capitals, a group before the name is gone,
// and the value is as it stands.
struct ContentLine {
    std::string name;
    std::vector<std::pair<std::string, std::string>> parameters; // one for each value of a list
    std::string value;
    std::size_t number = 0; // of the line in the file, from 1
};

// The lines of a file (RFC 6350, section 3.2; RFC 2425, section 5.8), those that were folded put together.
// Raises InterchangeError, which names the line.
std::vector<ContentLine> readContentLines(const std::string& text);

// Ends with CR LF, folded so that no piece has more than 75 bytes and no character is cut.
std::string foldedLine(const std::string& line);

// Values: backslashes before commas, semicolons, backslashes and the n of a line end.
std::string escaped(const std::string& text);
std::string unescaped(const std::string& value);
std::vector<std::string> splitValue(const std::string& value, char separator); // pieces, unescaped

} // namespace tsr
