#pragma once

#include <string>

namespace tsr {

// A name as a file name: letters, digits, "_", "." behind the first character and blanks within stay; any
// other byte becomes "%" and two hexadecimal digits. "-" is escaped too, as it divides the names of
// preference files.
std::string toFileName(const std::string& name);
std::string fromFileName(const std::string& fileName); // raises HandheldError for a "%" without two digits

} // namespace tsr
