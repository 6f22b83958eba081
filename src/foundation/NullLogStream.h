#pragma once

#include <ostream>
#include <streambuf>

namespace tsr {

// Accepts and drops every character.
class NullLogStreambuf : public std::streambuf {
protected:
    int_type overflow(int_type c) override { return traits_type::not_eof(c); }
};

// The log of a session that nobody traces. It is no tagged stream: tags vanish, texts are dropped.
class NullLogStream : public std::ostream {
public:
    NullLogStream() : std::ostream(nullptr) { rdbuf(&buffer_); }

private:
    NullLogStreambuf buffer_;
};

} // namespace tsr
