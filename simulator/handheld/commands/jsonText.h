#pragma once

#include <string>
#include <vector>

namespace tsr {

// Text of the handheld as JSON can hold it, UTF-8: text that is none is taken for one byte a character.
std::string jsonText(const std::string& text);

std::string hexText(const std::vector<unsigned char>& data); // lowercase, without blanks

} // namespace tsr
