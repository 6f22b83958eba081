#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace tsr {

// The `tessera` command; `arguments` are those behind the program's name. Returns its exit status: 0, 1 for a
// failure, 2 for wrong arguments. After a failure there is one line on `err` and the store is as it was.
int runTessera(const std::vector<std::string>& arguments, std::istream& in, std::ostream& out,
               std::ostream& err);

} // namespace tsr
