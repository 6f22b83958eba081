#include "foundation/Error.h"

#include <sstream>

namespace tsr {

std::string errorText(const Error& error) {
    std::ostringstream text;
    error.print(text);
    return text.str();
}

std::ostream& operator<<(std::ostream& stream, const Error& error) {
    error.print(stream);
    return stream;
}

} // namespace tsr
