#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace tsr {

// The program `handheld`, without its own name in `arguments`. Gives the exit status: 0, 1 for a failure, 2
// for wrong arguments; behind a failure stands one line on `err`, and nothing has changed.
int runHandheld(const std::vector<std::string>& arguments, std::istream& in, std::ostream& out,
                std::ostream& err);

} // namespace tsr
