#pragma once

#include <cstddef>
#include <ostream>
#include <string>

namespace tsr {

// Shows what is going on: on a terminal in one line that is written anew with each text, elsewhere as plain
// lines.
class ProgressLine {
public:
    ProgressLine(std::ostream& out, bool terminal) : out_(out), terminal_(terminal) {}

    void show(const std::string& text);
    void clear(); // leaves an empty line on a terminal, and what was written elsewhere

private:
    std::ostream& out_;
    bool terminal_;
    std::size_t shown_ = 0; // columns on the line
};

} // namespace tsr
