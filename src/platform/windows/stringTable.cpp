#include "platform/stringTable.h"

#include "platform/windows/LibraryModule.h"

namespace tsr::platform {

namespace {

constexpr int bufferBytes = 1024; // a longer text is cut

} // namespace

std::string loadString(std::uint32_t id) {
    const HMODULE library = LibraryModule::handle();
    if (library == nullptr) return {}; // null would ask the program for its texts
    char text[bufferBytes];
    const int length = LoadStringA(library, id, text, bufferBytes);
    return length > 0 ? std::string(text, static_cast<std::size_t>(length)) : std::string();
}

} // namespace tsr::platform
