#pragma once

#include <string>

#include "tessera/commands/TesseraCommandLine.h"

namespace tsr {

// All of a file, or of the standard input for "-". Raises TesseraError when it can't be read.
std::string inputText(const TesseraCommandLine& line, const std::string& name);

} // namespace tsr
