#pragma once

#include <ostream>
#include <sstream>

#include "foundation/TaggedStreambuf.h"

namespace tsr {

// A stream of tagged text (see TaggedStreambuf) into `target`, which outlives it.
template <typename Char>
class BasicTaggedOutputStream : public std::basic_ostream<Char> {
public:
    explicit BasicTaggedOutputStream(std::basic_streambuf<Char>* target)
        : std::basic_ostream<Char>(nullptr), buffer_(target) {
        this->rdbuf(&buffer_);
        this->imbue(std::locale::classic()); // numbers are plain decimal, whatever the process has set
    }

private:
    TaggedStreambuf<Char> buffer_;
};

namespace detail {

// Built before, and destroyed after, the tagged stream that writes into it.
template <typename Char>
struct StringTarget {
    std::basic_stringbuf<Char> target{std::ios_base::out};
};

} // namespace detail

// Tagged text into a string.
template <typename Char>
class BasicTaggedOutputStringStream : private detail::StringTarget<Char>,
                                      public BasicTaggedOutputStream<Char> {
public:
    BasicTaggedOutputStringStream() : BasicTaggedOutputStream<Char>(&this->target) {}

    // Ends the pending line, without a line feed, and returns all the text.
    std::basic_string<Char> str() {
        this->put(TaggedStreambuf<Char>::endOfText);
        return this->target.str();
    }
};

using TaggedOutputStream = BasicTaggedOutputStream<char>;
using TaggedOutputStringStream = BasicTaggedOutputStringStream<char>;

} // namespace tsr
