#include "foundation/numbers.h"

#include <locale>
#include <sstream>

#include "foundation/GeneralError.h"

namespace tsr {

std::uint32_t parseUnsigned(const std::string& text) {
    if (text.empty()) throw GeneralError(Message::NotUnsigned) << Tag("s") << text;
    std::uint32_t value = 0;
    for (const char character : text) {
        if (character < '0' || character > '9') throw GeneralError(Message::NotUnsigned) << Tag("s") << text;
        value = value * 10 + static_cast<std::uint32_t>(character - '0');
    }
    return value;
}

std::uint32_t parseWideUnsigned(const char16_t* characters, std::size_t count) {
    std::wistringstream stream(std::wstring(characters, characters + count));
    stream.imbue(std::locale::classic());
    std::uint32_t value = 0;
    if (!(stream >> value)) throw GeneralError(Message::WideNotUnsigned);
    return value;
}

std::string toDecimal(std::uint32_t value) { return std::to_string(value); }

} // namespace tsr
