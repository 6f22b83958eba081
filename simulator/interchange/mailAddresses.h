#pragma once

#include <string>
#include <vector>

namespace tsr {

// The addresses of a list that commas or line feeds divide, none of them empty. What stands in quotation
// marks or in angle brackets, "Lee, Pat" <pat@example.com>, is not divided; one that its line doesn't close
// is a character like any other.
std::vector<std::string> dividedAddresses(const std::string& list);

std::string joinedAddresses(const std::vector<std::string>& addresses, const std::string& separator);

} // namespace tsr
