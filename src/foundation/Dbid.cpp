#include "foundation/Dbid.h"

#include "foundation/GeneralError.h"
#include "foundation/hexadecimal.h"

namespace tsr {

Dbid::Dbid(const std::string& text) {
    std::size_t position = 0;
    try {
        for (std::uint32_t& word : words_) position = parseHexWord(text, position, word);
    } catch (const Error& error) {
        throw GeneralError(Message::InvalidDbid, error) << Tag("s") << text;
    }
    if (position != text.size()) throw GeneralError(Message::InvalidDbid) << Tag("s") << text;
}

std::string Dbid::text() const {
    std::string result;
    for (const std::uint32_t word : words_) result += toHexWord(word);
    return result;
}

std::ostream& operator<<(std::ostream& stream, const Dbid& value) { return stream << value.text(); }

} // namespace tsr
