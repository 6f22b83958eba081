#pragma once

#include <iosfwd>
#include <string>

namespace tsr {

// A password comes from the first line of `file`, or with no file from the environment variable
// TESSERA_PASSWORD, or it is asked for with `prompt` on `err` and read from `in` unseen. It never stands
// among the arguments, where others could see it. Raises TesseraError when there is none.
std::string readPassword(const std::string& file, const std::string& prompt, std::istream& in,
                         std::ostream& err);

} // namespace tsr
