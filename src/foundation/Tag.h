#pragma once

#include <ostream>
#include <string>

namespace tsr {

// Names the placeholder that the value after it is for: `stream << "$n found" << Tag('n') << 3`.
class Tag {
public:
    explicit Tag(char letter) : name_(1, letter) {}
    explicit Tag(const char* word) : name_(word) {}

    const std::string& name() const { return name_; }

private:
    std::string name_;
};

// Starts a value when the stream is a tagged one. On any other stream, such as a NullLogStream, the tag
// vanishes and the value is written as text.
std::ostream& operator<<(std::ostream& stream, const Tag& tag);

} // namespace tsr
