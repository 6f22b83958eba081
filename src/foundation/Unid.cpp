#include "foundation/Unid.h"

#include "foundation/GeneralError.h"
#include "foundation/hexadecimal.h"

namespace tsr {

Unid::Unid(const std::string& text) {
    std::size_t position = 0;
    try {
        for (std::uint32_t& word : words_) position = parseHexWord(text, position, word);
    } catch (const Error& error) {
        throw GeneralError(Message::InvalidUnid, error) << Tag("s") << text;
    }
    if (position != text.size()) throw GeneralError(Message::InvalidUnid) << Tag("s") << text;
}

std::string Unid::text() const {
    std::string result;
    for (const std::uint32_t word : words_) result += toHexWord(word);
    return result;
}

std::ostream& operator<<(std::ostream& stream, const Unid& value) { return stream << value.text(); }

} // namespace tsr
