#include "foundation/StringPair.h"

#include "foundation/GeneralError.h"

namespace tsr {

StringPair splitPair(const std::string& text) {
    const std::size_t separator = text.find('=');
    if (separator == std::string::npos) throw GeneralError(Message::InvalidStringPair) << Tag("s") << text;
    return {text.substr(0, separator), text.substr(separator + 1)};
}

} // namespace tsr
