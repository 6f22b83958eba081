#include "handheld/Handheld.h"

#include <chrono>
#include <stdexcept>

namespace tsr {

namespace {

constexpr std::uint32_t secondsFrom1904To1970 = 2082844800;

} // namespace

std::uint32_t fourCharacterCode(const std::string& text) {
    std::uint32_t code = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        code = code << 8 | (i < text.size() ? static_cast<std::uint8_t>(text[i]) : std::uint8_t{' '});
    }
    return code;
}

HandheldDatabase* Handheld::find(const std::string& name) {
    auto found = databases.find(name);
    return found == databases.end() ? nullptr : &found->second;
}

const HandheldDatabase* Handheld::find(const std::string& name) const {
    auto found = databases.find(name);
    return found == databases.end() ? nullptr : &found->second;
}

HandheldDatabase& Handheld::create(const std::string& name, std::uint32_t type, std::uint32_t creator,
                                   std::uint16_t attributes, std::uint16_t version) {
    if (name.empty() || name.size() > HandheldDatabase::maxNameBytes) {
        throw std::invalid_argument("a database name has 1 to 31 bytes");
    }
    DatabaseHeader header;
    header.name = name;
    header.type = type;
    header.creator = creator;
    header.attributes = attributes;
    header.version = version;
    header.creationTime = now() + secondsFrom1904To1970;
    header.modificationTime = header.creationTime;
    return databases.insert_or_assign(name, HandheldDatabase(header)).first->second;
}

std::uint32_t Handheld::now() const {
    if (clock) return *clock;
    const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
    return static_cast<std::uint32_t>(std::chrono::duration_cast<std::chrono::seconds>(sinceEpoch).count());
}

} // namespace tsr
