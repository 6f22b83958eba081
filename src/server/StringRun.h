#pragma once

#include <cstddef>
#include <cstring>
#include <string>

namespace tsr {

// Many short strings of a request, one behind the other, each ending in a NUL: a fraction of the memory of a
// vector of strings, which counts where there are four for each item of a large database.
class StringRun {
public:
    void reserve(std::size_t bytes) { bytes_.reserve(bytes); }

    // A text ends at its first NUL, which would end it for the server too.
    void add(const std::string& text) { bytes_.append(text.c_str(), std::strlen(text.c_str()) + 1); }

    const std::string& bytes() const { return bytes_; } // the terminators included

private:
    std::string bytes_;
};

} // namespace tsr
