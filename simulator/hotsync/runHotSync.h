#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace tsr {

// The HotSync manager: `arguments` are those of the command line without the program's name. `terminal` tells
// whether `out` is one. Returns the exit code: 0 when every application finished, 1 when one didn't or the
// handheld can't be opened or saved, 2 for bad arguments.
int runHotSync(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err,
               bool terminal);

} // namespace tsr
