#pragma once

#include <fstream>
#include <string>

#include "foundation/TaggedOutputStream.h"

namespace tsr {

namespace detail {

// Built before, and destroyed after, the tagged stream that writes into it.
struct FileTarget {
    std::filebuf file;
};

} // namespace detail

// The debug log file of one application, beside the library: "Tsr", the display name without blanks, ".log".
class DebugLogStream : private detail::FileTarget, public TaggedOutputStream {
public:
    DebugLogStream() : TaggedOutputStream(&file) {}

    // Opens the file for appending. A failure isn't told: what is written to a file that isn't open is lost.
    void open(const std::string& displayName);

    static std::string fileName(const std::string& displayName); // without the directory
};

} // namespace tsr
